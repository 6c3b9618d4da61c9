#include "src/outlook/folder_helpers.h"

#include "src/core/text.h"
#include "src/core/value.h"
#include "src/core/z_error.h"
#include "src/errors/error_handling.h"
#include "src/host/mapi_object.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_folder.h"
#include "src/resources/string_table.h"

namespace zintra {

namespace {

constexpr int32_t kStrPublicFolders = 50;

// The parent folder, or nullptr when the walk ends here.
std::shared_ptr<Folder> ParentFolder(const std::shared_ptr<Folder>& folder) {
  try {
    return std::dynamic_pointer_cast<Folder>(folder->Parent());
  } catch (const ZError&) {
    return nullptr;
  }
}

// The search key, or Empty when it cannot be read.

std::string PathForLog(const std::shared_ptr<Folder>& folder) {
  try {
    return FullMAPIPathName(folder);
  } catch (const ZError& e) {
    return "{Error " + std::to_string(e.Number()) + " " + e.Description() + "}";
  }
}

}  // namespace

std::string FullMAPIPathName(const std::shared_ptr<Folder>& folder) {
  if (!folder) throw ZError(kErrObjectNotSet, "Object variable or With block variable not set");
  std::string path = "\\" + folder->Name();
  auto parent = ParentFolder(folder);
  for (int steps = 0; parent; ++steps) {
    if (steps == kFullPathMaxSteps) {
      path = "..." + path;
      break;
    }
    path = "\\" + parent->Name() + path;
    parent = ParentFolder(parent);
  }
  return path;
}

std::string Foldername(const std::shared_ptr<Folder>& folder) {
  if (!folder) throw ZError(kErrObjectNotSet, "Object variable or With block variable not set");
  return folder->Name();
}

bool IsPublicFolder(const std::shared_ptr<Folder>& folder, const StringTable& strings) {
  const std::string public_name = strings.Load(kStrPublicFolders);
  for (auto f = folder; f; f = ParentFolder(f)) {
    if (f->Name() == public_name) return true;
  }
  return false;
}

std::shared_ptr<Folder> RootFolder(const std::shared_ptr<Folder>& folder) {
  auto root = folder;
  for (auto parent = root ? ParentFolder(root) : nullptr; parent; parent = ParentFolder(parent)) {
    root = parent;
  }
  return root;
}

std::shared_ptr<Folder> PersonalStoreRoot(Namespace& session) {
  return RootFolder(session.GetDefaultFolder(kOlFolderInbox));
}

Value FolderSearchKey(const std::shared_ptr<Folder>& folder, MapiUtils& utils) {
  try {
    return utils.HrGetOneProp(folder->MAPIOBJECT(), kPrSearchKey);
  } catch (const ZError&) {
    return {};
  }
}

bool FoldersSame(const std::shared_ptr<Folder>& a, const std::shared_ptr<Folder>& b,
                 MapiUtils& utils, ErrorHandling& errors) {
  if (!a || !b) return false;
  Value key_a = FolderSearchKey(a, utils);
  return FoldersSame(a, key_a, b, FolderSearchKey(b, utils), errors);
}

bool FoldersSame(const std::shared_ptr<Folder>& a, const Value& key_a,
                 const std::shared_ptr<Folder>& b, const Value& key_b, ErrorHandling& errors) {
  if (!a || !b) return false;
  if (!key_a.IsEmpty() && !key_b.IsEmpty()) return key_a == key_b;
  errors.WriteLogMessage("Using EntryID's to compare '" + PathForLog(a) + "' to '" + PathForLog(b) +
                             "' because of failure reading PR_SEARCH_KEY",
                         false);
  return text::EqualsNoCase(a->EntryID(), b->EntryID());
}

}  // namespace zintra
