#include "sim/registry/memory_registry.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <unordered_map>

#include "src/core/text.h"

namespace zintra::sim {

namespace {

// Rights that change a key or its values: a read-only key refuses them.
constexpr uint32_t kWriteRights =
    kKeySetValue | kKeyCreateSubKey | 0x0020 | 0x10000 | 0x40000 | 0x80000;

std::vector<std::string> PathParts(const std::string& path) {
  std::vector<std::string> parts;
  for (std::string& part : text::Split(path, "\\")) {
    if (!part.empty()) parts.push_back(std::move(part));
  }
  return parts;
}

}  // namespace

struct MemoryRegistry::Node {
  std::string name;
  std::map<std::string, std::shared_ptr<Node>> children;  // by lower-case name
  // In the order written, as enumeration gives them. Erasing marks a gap (`gone`) that
  // the next read of the whole list closes, so that many deletions from one key, like
  // many additions, take linear time.
  std::vector<RegistryValue> values;
  std::vector<bool> gone;
  size_t gaps = 0;
  // Lower-case name -> position in `values` of each value that is not gone.
  std::unordered_map<std::string, size_t> value_index;
  KeyAccess access = KeyAccess::kFull;
  bool deleted = false;

  RegistryValue* FindValue(const std::string& value_name) {
    auto it = value_index.find(text::LCase(value_name));
    return it == value_index.end() ? nullptr : &values[it->second];
  }
  void SetValue(RegistryValue value) {
    if (RegistryValue* existing = FindValue(value.name)) {
      existing->type = value.type;
      existing->data = std::move(value.data);
    } else {
      AddValue(std::move(value));
    }
  }
  void AddValue(RegistryValue value) {
    value_index[text::LCase(value.name)] = values.size();
    values.push_back(std::move(value));
    gone.push_back(false);
  }
  bool EraseValue(const std::string& value_name) {
    auto it = value_index.find(text::LCase(value_name));
    if (it == value_index.end()) return false;
    gone[it->second] = true;
    values[it->second] = {};
    ++gaps;
    value_index.erase(it);
    return true;
  }
  // The values that are not gone, in order.
  const std::vector<RegistryValue>& Values() {
    if (gaps == 0) return values;
    size_t kept = 0;
    for (size_t i = 0; i < values.size(); ++i) {
      if (gone[i]) continue;
      if (kept != i) {
        values[kept] = std::move(values[i]);
        value_index[text::LCase(values[kept].name)] = kept;
      }
      ++kept;
    }
    values.resize(kept);
    gone.assign(kept, false);
    gaps = 0;
    return values;
  }
  void MarkDeleted() {
    deleted = true;
    for (auto& [key, child] : children) child->MarkDeleted();
  }
  void ApplyAccess(KeyAccess rule) {
    access = rule;
    for (auto& [key, child] : children) child->ApplyAccess(rule);
  }
};

std::string RegistryValue::AsString() const {
  std::string out(data.begin(), data.end());
  if (!out.empty() && out.back() == '\0') out.pop_back();
  return out;
}

std::optional<uint32_t> RegistryValue::AsDword() const {
  if (type != kRegDword || data.size() != 4) return std::nullopt;
  return static_cast<uint32_t>(data[0]) | static_cast<uint32_t>(data[1]) << 8 |
         static_cast<uint32_t>(data[2]) << 16 | static_cast<uint32_t>(data[3]) << 24;
}

MemoryRegistry::MemoryRegistry()
    : current_user_(std::make_shared<Node>()), local_machine_(std::make_shared<Node>()) {
  current_user_->name = "HKEY_CURRENT_USER";
  local_machine_->name = "HKEY_LOCAL_MACHINE";
}

MemoryRegistry::~MemoryRegistry() = default;

std::shared_ptr<MemoryRegistry::Node> MemoryRegistry::Root(HKey hive) const {
  if (hive == kHKeyCurrentUser) return current_user_;
  if (hive == kHKeyLocalMachine) return local_machine_;
  return nullptr;
}

std::shared_ptr<MemoryRegistry::Node> MemoryRegistry::Resolve(HKey key, uint32_t needed,
                                                              int32_t* rc) const {
  std::shared_ptr<Node> node = Root(key);
  uint32_t granted = kKeyAllAccess;
  if (!node) {
    auto it = handles_.find(key);
    if (it == handles_.end()) {
      *rc = kRegInvalidHandle;
      return nullptr;
    }
    node = it->second.node;
    granted = it->second.access;
  }
  if (node->deleted) {
    *rc = kRegKeyDeleted;
    return nullptr;
  }
  if ((granted & needed) != needed) {
    *rc = kRegAccessDenied;
    return nullptr;
  }
  *rc = kRegSuccess;
  return node;
}

std::shared_ptr<MemoryRegistry::Node> MemoryRegistry::Walk(std::shared_ptr<Node> from,
                                                           const std::string& path) const {
  for (const std::string& part : PathParts(path)) {
    auto it = from->children.find(text::LCase(part));
    if (it == from->children.end()) return nullptr;
    from = it->second;
  }
  return from;
}

std::shared_ptr<MemoryRegistry::Node> MemoryRegistry::WalkOrCreate(HKey hive,
                                                                   const std::string& path) {
  std::shared_ptr<Node> node = Root(hive);
  if (!node) throw std::invalid_argument("MemoryRegistry: unknown hive");
  std::string_view rest = path;
  std::shared_ptr<Node> last = last_node_.lock();
  if (last && !last->deleted && hive == last_hive_ && !last_path_.empty() &&
      path.size() > last_path_.size() && path[last_path_.size()] == '\\' &&
      path.compare(0, last_path_.size(), last_path_) == 0) {
    node = last;
    rest.remove_prefix(last_path_.size());
  }
  for (const std::string& part : PathParts(std::string(rest))) {
    auto& child = node->children[text::LCase(part)];
    if (!child) {
      child = std::make_shared<Node>();
      child->name = part;
    }
    node = child;
  }
  last_hive_ = hive;
  last_path_ = path;
  last_node_ = node;
  return node;
}

HKey MemoryRegistry::NewHandle(std::shared_ptr<Node> node, uint32_t access) {
  HKey handle = next_handle_;
  next_handle_ += 4;
  handles_[handle] = Handle{std::move(node), access};
  return handle;
}

MemoryRegistry::ObservedCall MemoryRegistry::Observe(std::string_view member) {
  if (!enter_) return ObservedCall(nullptr);
  enter_(member);
  return ObservedCall(&leave_);
}

int32_t MemoryRegistry::Injected(const std::string& member) {
  auto it = faults_.find(member);
  if (it == faults_.end()) return kRegSuccess;
  Fault& fault = it->second;
  if (fault.skip > 0) {
    --fault.skip;
    return kRegSuccess;
  }
  int32_t error = fault.error;
  if (fault.times > 0 && --fault.times == 0) faults_.erase(it);
  return error;
}

// --- Registry ---

int32_t MemoryRegistry::OpenKey(HKey parent, const std::string& sub_key, uint32_t access,
                                HKey* result) {
  *result = 0;
  const ObservedCall call = Observe("OpenKey");
  if (int32_t rc = Injected("OpenKey")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(parent, 0, &rc);
  if (!node) return rc;
  node = Walk(node, sub_key);
  if (!node) return kRegFileNotFound;
  if (node->access == KeyAccess::kDenied) return kRegAccessDenied;
  if (node->access == KeyAccess::kReadOnly && (access & kWriteRights) != 0) {
    return kRegAccessDenied;
  }
  *result = NewHandle(node, access);
  return kRegSuccess;
}

int32_t MemoryRegistry::CreateKey(HKey parent, const std::string& sub_key, uint32_t access,
                                  HKey* result, bool* created) {
  *result = 0;
  if (created) *created = false;
  const ObservedCall call = Observe("CreateKey");
  if (int32_t rc = Injected("CreateKey")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(parent, 0, &rc);
  if (!node) return rc;
  bool made = false;
  for (const std::string& part : PathParts(sub_key)) {
    auto it = node->children.find(text::LCase(part));
    if (it != node->children.end()) {
      node = it->second;
      continue;
    }
    if (node->access != KeyAccess::kFull) return kRegAccessDenied;
    auto child = std::make_shared<Node>();
    child->name = part;
    node->children[text::LCase(part)] = child;
    node = child;
    made = true;
  }
  if (node->access == KeyAccess::kDenied) return kRegAccessDenied;
  if (node->access == KeyAccess::kReadOnly && (access & kWriteRights) != 0) {
    return kRegAccessDenied;
  }
  if (created) *created = made;
  *result = NewHandle(node, access);
  return kRegSuccess;
}

int32_t MemoryRegistry::QueryValue(HKey key, const std::string& name, uint32_t* type, uint8_t* data,
                                   uint32_t* size) {
  const ObservedCall call = Observe("QueryValue");
  if (int32_t rc = Injected("QueryValue")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(key, kKeyQueryValue, &rc);
  if (!node) return rc;
  const RegistryValue* value = node->FindValue(name);
  if (!value) return kRegFileNotFound;
  if (type) *type = value->type;
  if (!size) return data ? kRegInvalidParameter : kRegSuccess;
  const uint32_t length = static_cast<uint32_t>(value->data.size());
  if (data && *size < length) {
    *size = length;
    return kRegMoreData;
  }
  if (data && length > 0) std::memcpy(data, value->data.data(), length);
  *size = length;
  return kRegSuccess;
}

int32_t MemoryRegistry::SetValue(HKey key, const std::string& name, uint32_t type,
                                 const uint8_t* data, uint32_t size) {
  const ObservedCall call = Observe("SetValue");
  if (int32_t rc = Injected("SetValue")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(key, kKeySetValue, &rc);
  if (!node) return rc;
  if (size > 0 && !data) return kRegInvalidParameter;
  node->SetValue(RegistryValue{name, type, std::vector<uint8_t>(data, data + size)});
  return kRegSuccess;
}

int32_t MemoryRegistry::DeleteValue(HKey key, const std::string& name) {
  const ObservedCall call = Observe("DeleteValue");
  if (int32_t rc = Injected("DeleteValue")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(key, kKeySetValue, &rc);
  if (!node) return rc;
  return node->EraseValue(name) ? kRegSuccess : kRegFileNotFound;
}

int32_t MemoryRegistry::DeleteKey(HKey parent, const std::string& sub_key) {
  const ObservedCall call = Observe("DeleteKey");
  if (int32_t rc = Injected("DeleteKey")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(parent, 0, &rc);
  if (!node) return rc;
  std::vector<std::string> parts = PathParts(sub_key);
  if (parts.empty()) return kRegInvalidParameter;  // a hive or the key itself
  const std::string leaf = parts.back();
  parts.pop_back();
  for (const std::string& part : parts) {
    auto it = node->children.find(text::LCase(part));
    if (it == node->children.end()) return kRegFileNotFound;
    node = it->second;
  }
  auto it = node->children.find(text::LCase(leaf));
  if (it == node->children.end()) return kRegFileNotFound;
  const std::shared_ptr<Node>& target = it->second;
  if (target->access != KeyAccess::kFull || !target->children.empty()) return kRegAccessDenied;
  target->MarkDeleted();
  node->children.erase(it);
  return kRegSuccess;
}

int32_t MemoryRegistry::EnumKey(HKey key, uint32_t index, std::string* name, uint32_t* name_size) {
  const ObservedCall call = Observe("EnumKey");
  if (int32_t rc = Injected("EnumKey")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(key, kKeyEnumerateSubKeys, &rc);
  if (!node) return rc;
  if (index >= node->children.size()) return kRegNoMoreItems;
  auto it = std::next(node->children.begin(), index);
  const std::string& found = it->second->name;
  const uint32_t length = static_cast<uint32_t>(found.size());
  const uint32_t capacity = *name_size;
  *name_size = length;
  if (length + 1 > capacity) return kRegMoreData;
  *name = found;
  return kRegSuccess;
}

int32_t MemoryRegistry::EnumValue(HKey key, uint32_t index, std::string* name, uint32_t* name_size,
                                  uint32_t* type) {
  const ObservedCall call = Observe("EnumValue");
  if (int32_t rc = Injected("EnumValue")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(key, kKeyQueryValue, &rc);
  if (!node) return rc;
  const std::vector<RegistryValue>& values = node->Values();
  if (index >= values.size()) return kRegNoMoreItems;
  const RegistryValue& value = values[index];
  const uint32_t length = static_cast<uint32_t>(value.name.size());
  const uint32_t capacity = *name_size;
  *name_size = length;
  if (length + 1 > capacity) return kRegMoreData;
  *name = value.name;
  if (type) *type = value.type;
  return kRegSuccess;
}

int32_t MemoryRegistry::QueryInfoKey(HKey key, RegistryKeyInfo* info) {
  const ObservedCall call = Observe("QueryInfoKey");
  if (int32_t rc = Injected("QueryInfoKey")) return rc;
  int32_t rc = kRegSuccess;
  std::shared_ptr<Node> node = Resolve(key, kKeyQueryValue, &rc);
  if (!node) return rc;
  *info = RegistryKeyInfo{};
  info->sub_keys = static_cast<uint32_t>(node->children.size());
  const std::vector<RegistryValue>& values = node->Values();
  info->values = static_cast<uint32_t>(values.size());
  for (const auto& [lower, child] : node->children) {
    info->max_sub_key_len =
        std::max(info->max_sub_key_len, static_cast<uint32_t>(child->name.size()));
  }
  for (const RegistryValue& value : values) {
    info->max_value_name_len =
        std::max(info->max_value_name_len, static_cast<uint32_t>(value.name.size()));
    info->max_value_len = std::max(info->max_value_len, static_cast<uint32_t>(value.data.size()));
  }
  return kRegSuccess;
}

int32_t MemoryRegistry::CloseKey(HKey key) {
  if (Root(key)) return kRegSuccess;
  const ObservedCall call = Observe("CloseKey");
  if (int32_t rc = Injected("CloseKey")) return rc;
  return handles_.erase(key) ? kRegSuccess : kRegInvalidHandle;
}

// --- Fixture side ---

void MemoryRegistry::SetString(HKey hive, const std::string& path, const std::string& name,
                               const std::string& value) {
  std::vector<uint8_t> data(value.begin(), value.end());
  data.push_back(0);
  PutValue(hive, path, RegistryValue{name, kRegSz, std::move(data)});
}

void MemoryRegistry::SetDword(HKey hive, const std::string& path, const std::string& name,
                              uint32_t value) {
  PutValue(hive, path,
           RegistryValue{name,
                         kRegDword,
                         {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                          static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)}});
}

void MemoryRegistry::PutValue(HKey hive, const std::string& path, RegistryValue value) {
  WalkOrCreate(hive, path)->SetValue(std::move(value));
}

void MemoryRegistry::EditValues(HKey hive, const std::string& path, std::vector<ValueEdit> edits) {
  std::shared_ptr<Node> node = WalkOrCreate(hive, path);
  for (ValueEdit& edit : edits) {
    if (edit.remove) {
      node->EraseValue(edit.value.name);
    } else {
      node->SetValue(std::move(edit.value));
    }
  }
}

void MemoryRegistry::EnsureKey(HKey hive, const std::string& path) { WalkOrCreate(hive, path); }

bool MemoryRegistry::RemoveKey(HKey hive, const std::string& path) {
  std::vector<std::string> parts = PathParts(path);
  std::shared_ptr<Node> node = Root(hive);
  if (!node || parts.empty()) return false;
  const std::string leaf = parts.back();
  parts.pop_back();
  for (const std::string& part : parts) {
    auto it = node->children.find(text::LCase(part));
    if (it == node->children.end()) return false;
    node = it->second;
  }
  auto it = node->children.find(text::LCase(leaf));
  if (it == node->children.end()) return false;
  it->second->MarkDeleted();
  node->children.erase(it);
  return true;
}

bool MemoryRegistry::RemoveValue(HKey hive, const std::string& path, const std::string& name) {
  std::shared_ptr<Node> root = Root(hive);
  std::shared_ptr<Node> node = root ? Walk(root, path) : nullptr;
  if (!node) return false;
  return node->EraseValue(name);
}

bool MemoryRegistry::HasKey(HKey hive, const std::string& path) const {
  std::shared_ptr<Node> root = Root(hive);
  return root && Walk(root, path);
}

std::optional<RegistryValue> MemoryRegistry::GetValue(HKey hive, const std::string& path,
                                                      const std::string& name) const {
  std::shared_ptr<Node> root = Root(hive);
  std::shared_ptr<Node> node = root ? Walk(root, path) : nullptr;
  if (!node) return std::nullopt;
  const RegistryValue* value = node->FindValue(name);
  if (!value) return std::nullopt;
  return *value;
}

std::vector<std::string> MemoryRegistry::SubKeys(HKey hive, const std::string& path) const {
  std::vector<std::string> names;
  std::shared_ptr<Node> root = Root(hive);
  std::shared_ptr<Node> node = root ? Walk(root, path) : nullptr;
  if (!node) return names;
  for (const auto& [lower, child] : node->children) names.push_back(child->name);
  return names;
}

std::vector<RegistryValue> MemoryRegistry::Values(HKey hive, const std::string& path) const {
  std::shared_ptr<Node> root = Root(hive);
  std::shared_ptr<Node> node = root ? Walk(root, path) : nullptr;
  return node ? node->Values() : std::vector<RegistryValue>{};
}

void MemoryRegistry::VisitTree(
    HKey hive, const std::string& path,
    const std::function<void(const std::string&, const std::vector<RegistryValue>&)>& visit) const {
  std::shared_ptr<Node> root = Root(hive);
  std::shared_ptr<Node> node = root ? Walk(root, path) : nullptr;
  if (!node) return;
  std::string key_path = CanonicalPath(hive, path);
  Visit(node, key_path, visit);
}

void MemoryRegistry::Visit(
    const std::shared_ptr<Node>& node, std::string& path,
    const std::function<void(const std::string&, const std::vector<RegistryValue>&)>& visit) const {
  visit(path, node->Values());
  for (const auto& [lower, child] : node->children) {
    const size_t length = path.size();
    if (!path.empty()) path += '\\';
    path += child->name;
    Visit(child, path, visit);
    path.resize(length);
  }
}

std::string MemoryRegistry::CanonicalPath(HKey hive, const std::string& path) const {
  std::shared_ptr<Node> node = Root(hive);
  std::string out;
  for (const std::string& part : PathParts(path)) {
    if (!node) break;
    auto it = node->children.find(text::LCase(part));
    node = it == node->children.end() ? nullptr : it->second;
    if (!out.empty()) out += "\\";
    out += node ? node->name : part;
  }
  return out;
}

void MemoryRegistry::SetAccess(HKey hive, const std::string& path, KeyAccess access) {
  std::shared_ptr<Node> root = Root(hive);
  std::shared_ptr<Node> node = root ? Walk(root, path) : nullptr;
  if (!node) throw std::invalid_argument("MemoryRegistry::SetAccess: no key '" + path + "'");
  node->ApplyAccess(access);
}

void MemoryRegistry::FailCall(const std::string& member, int32_t error, int skip, int times) {
  faults_[member] = Fault{error, skip, times};
}

void MemoryRegistry::ClearFaults() { faults_.clear(); }

}  // namespace zintra::sim
