#include "tools/zintra-sim/world.h"

#include "sim/registry/reg_file.h"
#include "src/addin/addin_services.h"
#include "src/addin/connect.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/text.h"
#include "src/host/subclasser.h"
#include "src/logging/zintra_utils.h"
#include "src/settings/reg_settings.h"
#include "src/toolbars/toolbars.h"
#include "tools/zintra-sim/disk_files.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/scenario_reader.h"

namespace zintra::simtool {

namespace {

constexpr char kLoggingKey[] = "Software\\Brellow\\Zintra\\Logging";
constexpr char kLetterText[] = "Dear {name},\r\n\r\n";

bool SetsLogLevel(const RegistrySpec& desc) {
  for (const RegValueSpec& v : desc.values) {
    if (text::EqualsNoCase(v.name, "LogLevel")) return true;
  }
  return !desc.reg_files.empty();  // a settings file may set it; it wins
}

void CountItems(const sim::FolderRecord& f, size_t& n) {
  n += f.messages.size();
  for (const auto& c : f.children) CountItems(*c, n);
}

}  // namespace

void ApplyRegistry(sim::MemoryRegistry& registry, const RegistrySpec& desc) {
  for (const std::string& file : desc.reg_files) {
    try {
      sim::RegFile::Import(registry, ReadWholeFile(file), file);
    } catch (const sim::RegFileError& e) {
      std::string what = e.what();
      // "source:line: problem"
      size_t colon = what.find(": ", file.size());
      throw InputError(file, e.line(), "",
                       colon == std::string::npos ? what : what.substr(colon + 2));
    } catch (const std::exception& e) {
      // A fault of the reader on some text is still this file's problem to report.
      throw InputError(file, 0, "", std::string("cannot be read as a .reg file: ") + e.what());
    }
  }
  for (const RegValueSpec& v : desc.values) {
    auto [hive, path] = SplitRegKey(v.key);
    if (v.type == RegType::kDword) {
      registry.SetDword(hive, path, v.name, v.dword);
    } else if (v.type == RegType::kString) {
      registry.SetString(hive, path, v.name, v.text);
    } else {
      sim::RegistryValue value;
      value.name = v.name;
      value.type = kRegMultiSz;
      for (const std::string& t : v.texts) {
        value.data.insert(value.data.end(), t.begin(), t.end());
        value.data.push_back(0);
      }
      value.data.push_back(0);
      registry.PutValue(hive, path, value);
    }
  }
}

World::World(const Scenario& s, const RunOptions& o, const std::filesystem::path& log_root)
    : scenario_(s),
      options_(o),
      outlook_(log_root, s.start_time != 0 ? s.start_time : kDefaultStartTime),
      profile_(outlook_.profile()),
      loader_(profile_),
      errors_(ErrorHandlingHost{outlook_.error_logs, outlook_.msg_box, outlook_.registry,
                                outlook_.files, outlook_.platform, strings_}) {}

World::~World() {
  if (outlook_.Started() && !outlook_.Ended()) outlook_.EndProcess();
}

void World::Build() {
  loader_.Load(scenario_.profile, scenario_.outlook_version);
  for (const auto& store : profile_.Stores()) CountItems(*store->root, loaded_items_);
  // The scenario's registry first shows where the settings live; applied again below,
  // its own values win over what is written here.
  ApplyRegistry(outlook_.registry, scenario_.registry);
  if (outlook_.registry.HasKey(kHKeyLocalMachine, kAddinLoaderKey)) {
    settings_hive_ = kHKeyLocalMachine;
  }
  if (!SetsLogLevel(scenario_.registry)) {
    outlook_.registry.SetDword(settings_hive_, kLoggingKey, "LogLevel",
                               static_cast<uint32_t>(scenario_.log_level));
  }
  WriteFolderSettings();
  if (!scenario_.first_run) {
    // The add-in has run for this user before, so it scans the Inbox at start-up.
    outlook_.registry.SetDword(kHKeyCurrentUser, kProductKey, "UserFirstRun", 0);
  }
  ApplyRegistry(outlook_.registry, scenario_.registry);  // the scenario's own values win
  if (options_.log_level >= 0) {
    // --log-level wins over the scenario for this run.
    outlook_.registry.SetDword(settings_hive_, kLoggingKey, "LogLevel",
                               static_cast<uint32_t>(options_.log_level));
  }
  outlook_.objects.Register(kSubclasserProgId, [this] { return subclasser_; });
  window_messages_ = outlook_.app().WindowMessage.Connect(
      [this](int32_t hwnd, int32_t message, int32_t w) { subclasser_->Deliver(hwnd, message, w); });
  // Files attached by path are read from the simulated disk.
  profile_.SetFileReader([this](const std::string& path) { return outlook_.files.Contents(path); });
  // Windows' own temporary folder, where the letter's copy is saved before it is filed.
  std::string temp = outlook_.platform.TempPath();
  if (!temp.empty() && (temp.back() == '\\')) temp.pop_back();
  if (!temp.empty()) outlook_.files.AddFolder(temp);
  PlaceFiles(outlook_.files, scenario_.files);  // the scenario's own files win
  // The add-in's installation puts the letter template where Word finds templates.
  outlook_.files.AddFolder(kTemplatesFolder);
  std::string letter_template = std::string(kTemplatesFolder) + "\\" + kLetterTemplate;
  if (!outlook_.files.Contents(letter_template))
    outlook_.files.AddFile(letter_template, kLetterText);
  outlook_.SetAddin([this](const Host& host) {
    Host recorded = host;
    recorded.decisions = &decisions_;
    return std::make_shared<Connect>(recorded, errors_, strings_);
  });
}

std::shared_ptr<ZintraAddinApp> World::Addin() {
  auto connect = std::dynamic_pointer_cast<Connect>(outlook_.Addin().lock());
  return connect ? connect->AddinApp() : nullptr;
}

std::shared_ptr<ToolbarsAddin> World::Toolbars() {
  auto addin = Addin();
  return addin && addin->Toolbars() ? addin->Services() : nullptr;
}

void World::ReplaceSettings(const RegistrySpec& values, std::optional<bool> multi_user,
                            bool reset_messages) {
  std::shared_ptr<ZintraAddinApp> addin = Addin();
  if (!addin) {
    ApplyRegistry(outlook_.registry, values);  // read at the add-in's next start
    if (reset_messages) {
      RegSettings(outlook_.registry, outlook_.files, outlook_.platform).DialogSuppressReset();
    }
    return;
  }
  // The options page edits a copy of the settings in force and hands it back; here the
  // copy takes the new values from the registry they were written to.
  ApplyRegistry(outlook_.registry, values);
  RegSettings edited = addin->RegSettings();
  ZintraUtils* utils = addin->Utils();
  edited.Read(false, utils && utils->Outlook9(), addin->Outlook12OrHigher());
  if (multi_user) edited.MultiUser = *multi_user;
  if (reset_messages) edited.DialogSuppressReset();
  addin->SetRegSettings(edited);
}

std::vector<std::string> World::LogLines() const {
  std::vector<std::string> lines;
  for (const auto& log : outlook_.error_logs.Created()) {
    for (const auto& row : log->Rows())
      lines.push_back(row.kind.substr(0, 1) + " " + row.description);
  }
  return lines;
}

std::shared_ptr<sim::FolderRecord> World::Folder(const std::string& path, int line,
                                                 const char* field) {
  auto f = loader_.FindFolder(path);
  if (!f) {
    throw InputError(scenario_.source, line, field, "no folder \"" + path + "\" in the profile");
  }
  return f;
}

// One numbered list entry ("Foldersets\Contact\EntryID" value "1", ...).
void World::WriteIds(const std::string& list, int index, const std::string& path, int line,
                     const char* field) {
  std::string entry, store;
  if (!path.empty()) {
    auto f = Folder(path, line, field);
    entry = profile_.EntryIdOf(*f);
    store = profile_.StoreIdOf(*f->store);
  }
  std::string base = std::string(kProductKey) + "\\" + list;
  outlook_.registry.SetString(settings_hive_, base + "\\EntryID", std::to_string(index), entry);
  outlook_.registry.SetString(settings_hive_, base + "\\StoreID", std::to_string(index), store);
}

void World::WriteFolderSettings() {
  const std::string product = kProductKey;
  int i = 0;
  for (const FoldersetSpec& set : scenario_.foldersets) {
    ++i;
    WriteIds("Foldersets\\Contact", i, set.contacts, set.source_line, "contacts");
    WriteIds("Foldersets\\Email", i, set.email, set.source_line, "email");
    WriteIds("Foldersets\\Journal", i, set.journal, set.source_line, "journal");
    WriteIds("Foldersets\\SharedCalendar", i, set.shared_calendar, set.source_line,
             "shared_calendar");
    WriteIds("Foldersets\\SharedJournal", i, set.shared_journal, set.source_line, "shared_journal");
    WriteIds("Foldersets\\SharedTaskList", i, set.shared_tasks, set.source_line, "shared_tasks");
    outlook_.registry.SetDword(settings_hive_, product + "\\Foldersets\\Flags", std::to_string(i),
                               static_cast<uint32_t>(set.flags));
  }
  if (i > 0) {
    outlook_.registry.SetDword(settings_hive_, product + "\\Foldersets", "Count",
                               static_cast<uint32_t>(i));
  }
  i = 0;
  for (const MonitorSpec& m : scenario_.monitored_folders) {
    ++i;
    WriteIds("Monitoring\\Folders", i, m.folder, m.source_line, "folder");
    outlook_.registry.SetDword(settings_hive_, product + "\\Monitoring\\Folders\\Flags",
                               std::to_string(i), static_cast<uint32_t>(m.flags));
  }
  if (i > 0) {
    outlook_.registry.SetDword(settings_hive_, product + "\\Monitoring\\Folders", "FolderCount",
                               static_cast<uint32_t>(i));
  }
}

}  // namespace zintra::simtool
