#include "win32/controls/profile_folders.h"

#include "src/core/z_error.h"
#include "win32/com/dispatch_client.h"

namespace zintra::win32 {
namespace {

void Walk(const DispatchClient& folders, const std::string& parent,
          std::vector<ProfileFolder>& out) {
  int32_t count = folders.GetValue("Count").ToLong();
  for (int32_t i = 1; i <= count && out.size() < kMaxFolders; ++i) {
    try {
      DispatchClient folder(folders.GetDispatch("Item", {Variant(Value(i))}), "MAPIFolder");
      if (!folder) continue;
      ProfileFolder entry{
          parent + "\\" + folder.GetValue("Name").ToString(),
          {folder.GetValue("EntryID").ToString(), folder.GetValue("StoreID").ToString()}};
      std::string path = entry.path;
      out.push_back(std::move(entry));
      DispatchClient children(folder.GetDispatch("Folders"), "Folders");
      if (children) Walk(children, path, out);
    } catch (const ZError&) {
      // An unreachable store or folder: the others are still offered.
    }
  }
}

}  // namespace

std::vector<ProfileFolder> ReadProfileFolders(const ComPtr<IDispatch>& name_space) {
  std::vector<ProfileFolder> out;
  if (!name_space) return out;
  try {
    DispatchClient stores(DispatchClient(name_space, "NameSpace").GetDispatch("Folders"),
                          "Folders");
    if (stores) Walk(stores, "\\", out);
  } catch (const ZError&) {
    // No folders to offer: the page still edits everything else.
  }
  return out;
}

std::string PathOf(const std::vector<ProfileFolder>& folders, const FolderRef& ref) {
  if (ref.empty()) return {};
  for (const ProfileFolder& f : folders) {
    if (f.ref.entry_id == ref.entry_id) return f.path;
  }
  return "[" + ref.entry_id + "]";
}

}  // namespace zintra::win32
