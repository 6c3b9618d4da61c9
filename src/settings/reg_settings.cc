#include "src/settings/reg_settings.h"

#include <cctype>
#include <climits>
#include <cstdint>

#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/settings/mod_registry.h"

namespace zintra {

namespace {

// "Foldersets\Contact\EntryID" -> key "Software\Brellow\Zintra\Foldersets\Contact",
// value "EntryID".
void SplitName(const std::string& name, std::string* key_path, std::string* value_name) {
  size_t pos = name.rfind('\\');
  if (pos == std::string::npos) {
    *key_path = kProductKey;
    *value_name = name;
  } else {
    *key_path = std::string(kProductKey) + "\\" + name.substr(0, pos);
    *value_name = name.substr(pos + 1);
  }
}

std::string FullName(const std::string& name) { return std::string(kProductKey) + "\\" + name; }

// Decimal text as the settings file holds numbers: spaces, an optional sign, digits.
std::optional<int32_t> ParseLong(const std::string& raw) {
  std::string text = text::Trim(raw);
  size_t pos = 0;
  bool negative = false;
  if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) negative = text[pos++] == '-';
  if (pos == text.size()) return std::nullopt;
  long long value = 0;
  for (; pos < text.size(); ++pos) {
    if (!std::isdigit(static_cast<unsigned char>(text[pos]))) return std::nullopt;
    value = value * 10 + (text[pos] - '0');
    if (value > 2147483648LL) return std::nullopt;
  }
  if (negative) value = -value;
  if (value > INT32_MAX || value < INT32_MIN) return std::nullopt;
  return static_cast<int32_t>(value);
}

}  // namespace

RegSettings::RegSettings(Registry& registry, FileSystem& file_system, Platform& platform)
    : registry_(&registry), file_system_(&file_system), platform_(&platform) {
  MultiUser = modRegistry::KeyExists(registry, kHKeyLocalMachine, kAddinLoaderKey);
}

HKey RegSettings::ResolveHive(int32_t location) const {
  if (location == kLocationMachine || (location != kLocationUser && MultiUser)) {
    return kHKeyLocalMachine;
  }
  return kHKeyCurrentUser;
}

void RegSettings::Warn(const std::string& text) const {
  if (warning_sink_) warning_sink_(text);
}

// --- Reading one value ---

std::optional<std::string> RegSettings::ReadText(const std::string& name, int32_t location,
                                                 bool registry_only) {
  if (InFileMode(registry_only)) return FileGetValue(FullName(name));
  std::string key_path, value_name;
  SplitName(name, &key_path, &value_name);
  try {
    bool not_found = false;
    std::string value = modRegistry::ReadString(*registry_, ResolveHive(location), key_path,
                                                value_name, &not_found);
    if (not_found) return std::nullopt;
    return value;
  } catch (const ZError& e) {
    Warn(e.Description() + "; the default is used");
    return std::nullopt;
  }
}

std::optional<uint32_t> RegSettings::ReadDword(const std::string& name, int32_t location,
                                               bool registry_only) {
  if (InFileMode(registry_only)) {
    std::optional<std::string> text = FileGetValue(FullName(name));
    if (!text) return std::nullopt;
    std::optional<int32_t> number = ParseLong(*text);
    if (!number) {
      Warn("Settings file '" + EnterpriseSettingsPath() + "': '" + name + "' holds '" + *text +
           "', not a number; the default is used");
      return std::nullopt;
    }
    return static_cast<uint32_t>(*number);
  }
  std::string key_path, value_name;
  SplitName(name, &key_path, &value_name);
  try {
    bool not_found = false;
    uint32_t value =
        modRegistry::ReadDword(*registry_, ResolveHive(location), key_path, value_name, &not_found);
    if (not_found) return std::nullopt;
    return value;
  } catch (const ZError& e) {
    Warn(e.Description() + "; the default is used");
    return std::nullopt;
  }
}

std::string RegSettings::ReadString(const std::string& name, const std::string& default_value,
                                    int32_t location, bool registry_only) {
  return ReadText(name, location, registry_only).value_or(default_value);
}

int32_t RegSettings::ReadLong(const std::string& name, int32_t default_value, int32_t location,
                              bool registry_only) {
  std::optional<uint32_t> value = ReadDword(name, location, registry_only);
  return value ? static_cast<int32_t>(*value) : default_value;
}

bool RegSettings::ReadBool(const std::string& name, bool default_value, int32_t location,
                           bool registry_only) {
  std::optional<uint32_t> value = ReadDword(name, location, registry_only);
  return value ? *value != 0 : default_value;
}

int16_t RegSettings::ReadInteger(const std::string& name, int16_t default_value, int32_t location,
                                 bool registry_only) {
  int32_t value = ReadLong(name, default_value, location, registry_only);
  if (value > INT16_MAX || value < INT16_MIN) {
    throw ZError(kErrOverflow,
                 "Overflow: the setting '" + name + "' holds " + std::to_string(value) +
                     ", outside -32768 to 32767",
                 "RegSettings.Read");
  }
  return static_cast<int16_t>(value);
}

int32_t RegSettings::ReadCount(const std::string& name, int32_t location) {
  int32_t count = ReadLong(name, 0, location, false);
  if (count < 0 || count > kMaxListCount) {
    Warn("The setting '" + name + "' holds " + std::to_string(count) + ", outside 0 to " +
         std::to_string(kMaxListCount) + "; 0 is used");
    return 0;
  }
  return count;
}

StringList RegSettings::ReadStringList(const std::string& name, int32_t count, int32_t location) {
  StringList list;
  for (int32_t i = 1; i <= count; ++i) {
    list.Add(ReadString(name + "\\" + std::to_string(i), "", location, false));
  }
  return list;
}

LongList RegSettings::ReadLongList(const std::string& name, int32_t count, int32_t location) {
  LongList list;
  for (int32_t i = 1; i <= count; ++i) {
    list.Add(ReadLong(name + "\\" + std::to_string(i), 0, location, false));
  }
  return list;
}

// --- Writing one value ---

bool RegSettings::DeleteForDefault(const std::string& name, int32_t location, bool registry_only) {
  if (InFileMode(registry_only)) {
    FileDeleteValue(FullName(name));
    return true;
  }
  std::string key_path, value_name;
  SplitName(name, &key_path, &value_name);
  try {
    bool not_found = false;
    modRegistry::DeleteValue(*registry_, ResolveHive(location), key_path, value_name, &not_found);
    return true;
  } catch (const ZError&) {
    return false;  // the write that follows reports the failure
  }
}

void RegSettings::WriteText(const std::string& name, const std::string& text, int32_t location) {
  std::string key_path, value_name;
  SplitName(name, &key_path, &value_name);
  try {
    modRegistry::WriteString(*registry_, ResolveHive(location), key_path, value_name, text);
  } catch (const ZError& e) {
    Warn(e.Description() + "; the setting is not saved");
  }
}

void RegSettings::WriteDword(const std::string& name, uint32_t value, int32_t location) {
  std::string key_path, value_name;
  SplitName(name, &key_path, &value_name);
  try {
    modRegistry::WriteDword(*registry_, ResolveHive(location), key_path, value_name, value);
  } catch (const ZError& e) {
    Warn(e.Description() + "; the setting is not saved");
  }
}

void RegSettings::WriteString(const std::string& name, const std::string& value,
                              const std::optional<std::string>& default_value, int32_t location,
                              bool registry_only) {
  if (default_value && value == *default_value && DeleteForDefault(name, location, registry_only)) {
    return;
  }
  if (InFileMode(registry_only)) {
    FileSetValue(FullName(name), value);
  } else {
    WriteText(name, value, location);
  }
}

void RegSettings::WriteLong(const std::string& name, int32_t value,
                            const std::optional<int32_t>& default_value, int32_t location,
                            bool registry_only) {
  if (default_value && value == *default_value && DeleteForDefault(name, location, registry_only)) {
    return;
  }
  if (InFileMode(registry_only)) {
    FileSetValue(FullName(name), std::to_string(value));
  } else {
    WriteDword(name, static_cast<uint32_t>(value), location);
  }
}

void RegSettings::WriteBool(const std::string& name, bool value,
                            const std::optional<bool>& default_value, int32_t location,
                            bool registry_only) {
  if (default_value && value == *default_value && DeleteForDefault(name, location, registry_only)) {
    return;
  }
  if (InFileMode(registry_only)) {
    FileSetValue(FullName(name), value ? "1" : "0");
  } else {
    WriteDword(name, value ? 1 : 0, location);
  }
}

void RegSettings::WriteStringList(const std::string& name, const StringList& list, int32_t count,
                                  int32_t location) {
  for (int32_t i = 1; i <= count; ++i) {
    const std::string value = i <= list.Count() ? list.Item(i) : std::string();
    WriteString(name + "\\" + std::to_string(i), value, std::string(), location, false);
  }
}

void RegSettings::WriteLongList(const std::string& name, const LongList& list, int32_t count,
                                int32_t location) {
  for (int32_t i = 1; i <= count; ++i) {
    const int32_t value = i <= list.Count() ? list.Item(i) : 0;
    WriteLong(name + "\\" + std::to_string(i), value, 0, location, false);
  }
}

// --- Members outside Read and Save ---

bool RegSettings::ReadUserFlag(const std::string& name, bool default_value) const {
  std::string key_path, value_name;
  SplitName(name, &key_path, &value_name);
  try {
    bool not_found = false;
    uint32_t value =
        modRegistry::ReadDword(*registry_, kHKeyCurrentUser, key_path, value_name, &not_found);
    return not_found ? default_value : value != 0;
  } catch (const ZError& e) {
    Warn(e.Description() + "; the default is used");
    return default_value;
  }
}

bool RegSettings::DialogSuppressed(int32_t dialog) const {
  return ReadUserFlag("SuppressDialogs\\" + std::to_string(dialog), false);
}

void RegSettings::DialogSuppressed(int32_t dialog, bool suppressed) {
  WriteBool("SuppressDialogs\\" + std::to_string(dialog), suppressed, false, kLocationUser, true);
}

void RegSettings::DialogSuppressReset() {
  try {
    bool not_found = false;
    modRegistry::DeleteKey(*registry_, kHKeyCurrentUser,
                           std::string(kProductKey) + "\\SuppressDialogs", &not_found);
  } catch (const ZError& e) {
    Warn(e.Description() + "; suppressed messages stay suppressed");
  }
}

bool RegSettings::UserFirstRun() const { return ReadUserFlag("UserFirstRun", true); }

void RegSettings::UserFirstRun(bool first_run) {
  WriteBool("UserFirstRun", first_run, true, kLocationUser, true);
}

bool RegSettings::HasWriteAccess(int32_t location) const {
  try {
    if (UsingEnterpriseSettings) return FileHasWriteAccess();
    return modRegistry::KeyWritable(*registry_, ResolveHive(location), kProductKey);
  } catch (...) {
    return false;
  }
}

std::string RegSettings::EnterpriseSettingsPath() const {
  auto read = [this](HKey hive) {
    try {
      bool not_found = false;
      return modRegistry::ReadString(*registry_, hive, kPolicyKey, "EnterpriseSettingsPath",
                                     &not_found);
    } catch (const ZError& e) {
      Warn(e.Description() + "; no enterprise settings file is taken from there");
      return std::string();
    }
  };
  std::string user_path = read(kHKeyCurrentUser);
  if (!user_path.empty()) return user_path;
  return read(kHKeyLocalMachine);
}

bool RegSettings::AllowLocalOverride() const {
  if (EnterpriseSettingsPath().empty()) return true;
  try {
    bool not_found = false;
    uint32_t allow = modRegistry::ReadDword(*registry_, kHKeyLocalMachine, kPolicyKey,
                                            "AllowLocalOverride", &not_found);
    return not_found || allow == 1;
  } catch (const ZError& e) {
    // A policy value that is there but unreadable forbids, as any value other than 1.
    Warn(e.Description() + "; local override is not allowed");
    return false;
  }
}

std::string RegSettings::InsertLinebreaks(const std::string& text) {
  return SettingsFile::InsertLinebreaks(text);
}

std::optional<int32_t> RegSettings::utilFindFoldersetIndex(const std::string& ContactFolderEntryID,
                                                           const std::string& ContactFolderStoreID,
                                                           const EntryIdComparer& compare) const {
  for (int32_t i = 1; i <= FoldersetCount; ++i) {
    if (i > ContactFolderEntryIDs.Count() || i > ContactFolderStoreIDs.Count()) break;
    try {
      if (compare(ContactFolderEntryIDs.Item(i), ContactFolderEntryID) &&
          compare(ContactFolderStoreIDs.Item(i), ContactFolderStoreID)) {
        return i;
      }
    } catch (...) {
      // An identifier the library cannot compare is not this folder.
    }
  }
  return std::nullopt;
}

bool RegSettings::WriteAddinLoader(int32_t location) {
  HKey hive = location == kLocationUser ? kHKeyCurrentUser : kHKeyLocalMachine;
  try {
    modRegistry::WriteString(*registry_, hive, kAddinLoaderKey, "FriendlyName", "Zintra");
    modRegistry::WriteString(*registry_, hive, kAddinLoaderKey, "Description", "Zintra 3.0");
    modRegistry::WriteDword(*registry_, hive, kAddinLoaderKey, "LoadBehavior", 3);
    return true;
  } catch (const ZError& e) {
    Warn(e.Description() + "; the add-in is not registered with Outlook");
    return false;
  }
}

}  // namespace zintra
