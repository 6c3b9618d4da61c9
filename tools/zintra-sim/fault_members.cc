#include "tools/zintra-sim/fault_members.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "src/core/text.h"

namespace zintra::simtool {

namespace {

struct FaultClass {
  std::string_view name;
  std::vector<std::string_view> members;
  bool wildcard = true;  // "Class.*" names every member
};

// Every member each simulated class checks for faults before it does anything.
const std::vector<FaultClass>& Classes() {
  static const std::vector<FaultClass> kClasses = {
      {"AddressEntry", {"Address", "Fields", "ID", "Name", "Type"}},
      {"AddressList", {"Item"}},
      {"AddressLists", {"Count", "Item"}},
      {"Application",
       {"ActiveExplorer", "ActiveInspector", "CreateItem", "Explorers", "Inspectors", "ProductCode",
        "Session", "Version"}},
      {"Attachment", {"Delete", "DisplayName", "FileName", "Index", "PathName", "Size", "Type"}},
      {"Attachments", {"Add", "Count", "Item", "Remove"}},
      {"CommandBar",
       {"Controls", "Delete", "FindControl", "Name", "Parent", "Position", "SetPosition",
        "SetVisible", "Visible"}},
      {"CommandBarControl",
       {"Caption", "Click", "Delete", "Enabled", "Execute", "Id", "Parent", "SetCaption",
        "SetEnabled", "SetStyle", "SetTag", "SetVisible", "Style", "Tag", "Type", "Visible"}},
      {"CommandBarControls", {"Add", "Count", "Item"}},
      {"CommandBars", {"Add", "Count", "FindControl", "Item"}},
      {"Explorer", {"Activate", "Caption", "Close", "CommandBars", "CurrentFolder", "Selection"}},
      {"Explorers", {"Count", "Item"}},
      {"Folder",
       {"DefaultItemType", "Delete", "EntryID", "Folders", "Items", "MAPIOBJECT", "Name", "Parent",
        "SetName", "StoreID"}},
      {"Folders", {"Add", "Count", "Item"}},
      {"Inspector", {"Activate", "Caption", "Close", "CommandBars", "CurrentItem", "Hwnd"}},
      {"Inspectors", {"Count", "Item"}},
      {"Item",
       {"Attachments",
        "Body",
        "Categories",
        "Class",
        "Close",
        "Companies",
        "Copy",
        "CreationTime",
        "Delete",
        "Display",
        "EntryID",
        "FullName",
        "GetInspector",
        "LastModificationTime",
        "Links",
        "MAPIOBJECT",
        "MessageClass",
        "Move",
        "Owner",
        "Ownership",
        "Parent",
        "ReceivedTime",
        "Recipients",
        "Save",
        "Sensitivity",
        "SentOn",
        "SetBody",
        "SetCategories",
        "SetCompanies",
        "SetFullName",
        "SetMessageClass",
        "SetOwner",
        "SetSensitivity",
        "SetSubject",
        "SetType",
        "Subject",
        "Type",
        "UserProperties"}},
      {"Items",
       {"Add", "Count", "Find", "FindNext", "GetFirst", "GetLast", "GetNext", "GetPrevious", "Item",
        "Remove", "Sort"}},
      {"Link", {"Item", "Name"}},
      {"Links", {"Add", "Count", "Item", "Remove"}},
      {"MapiTable", {"GetRows", "GoToFirst", "RowCount", "SetColumns", "SetItem"}},
      {"MapiUtils",
       {"Cleanup", "CompareIDs", "GetIDsFromNames", "HrDeleteOneProp", "HrGetOneProp",
        "HrSetOneProp", "SetMAPIOBJECT"}},
      {"Namespace",
       {"CurrentUser", "Folders", "GetDefaultFolder", "GetFolderFromID", "GetItemFromID",
        "MAPIOBJECT"}},
      {"ObjectFactory", {"CreateObject"}},
      {"RdoFolder",
       {"AddItem", "DefaultItemType", "EntryID", "Fields", "ItemCount", "MAPIOBJECT", "Name",
        "Parent", "SetMAPIOBJECT", "StoreID"}},
      {"RdoMessage",
       {"Attachments", "Body", "CopyTo", "Delete", "EntryID", "Fields", "MAPIOBJECT",
        "MessageClass", "Move", "Parent", "Recipients", "Save", "Sender", "SetBody", "SetFields",
        "SetSubject", "StoreID", "Subject", "UserProperties"}},
      {"RdoSession",
       {"AddressLists", "CurrentUser", "GetDefaultFolder", "GetFolderFromID", "GetMessageFromID",
        "MAPIOBJECT", "SetMAPIOBJECT"}},
      {"Recipient", {"Address", "AddressEntry", "Name", "Resolved", "SetType", "Type"}},
      {"Recipients", {"Add", "Count", "Item", "Remove"}},
      {"SafeInspector", {"Hwnd", "Item", "SetItem"}},
      {"SafeItem",
       {"Body", "CopyTo", "Fields", "Item", "Recipients", "Sender", "SetFields", "SetItem"}},
      {"Selection", {"Count", "Item"}},
      {"UserProperties", {"Add", "Count", "Find", "Item", "Remove"}},
      {"UserProperty", {"Name", "SetValue", "Type", "Value"}},

      {"Registry",
       {"CloseKey", "CreateKey", "DeleteKey", "DeleteValue", "EnumKey", "EnumValue", "OpenKey",
        "QueryInfoKey", "QueryValue", "SetValue"},
       false},
      {"Files", {"Append", "MakeFolder", "ReadAll", "Remove", "WriteAll"}, false},
  };
  return kClasses;
}

const FaultClass* ClassOf(std::string_view member) {
  std::string_view cls = member.substr(0, member.find('.'));
  for (const FaultClass& c : Classes()) {
    if (c.name == cls) return &c;
  }
  return nullptr;
}

}  // namespace

bool IsFaultMember(const std::string& member) {
  size_t dot = member.find('.');
  const FaultClass* c = dot == std::string::npos ? nullptr : ClassOf(member);
  if (!c) return false;
  std::string_view name = std::string_view(member).substr(dot + 1);
  if (name == "*") return c->wildcard;
  return std::find(c->members.begin(), c->members.end(), name) != c->members.end();
}

std::string FaultMemberChoices(const std::string& member) {
  std::string list;
  // "Item" alone names its class: the member is what is missing.
  const FaultClass* c = ClassOf(member);
  if (c) {
    for (std::string_view m : c->members) list += (list.empty() ? "" : ", ") + std::string(m);
    if (c->wildcard) list += " or * (every member)";
    return "expected a member of " + std::string(c->name) + ": " + list;
  }
  for (const FaultClass& k : Classes()) list += (list.empty() ? "" : ", ") + std::string(k.name);
  return "expected a member of the simulated host as \"Class.Member\", the classes being " + list;
}

bool IsRegistryOrFileMember(const std::string& member) {
  return text::StartsWith(member, "Registry.") || text::StartsWith(member, "Files.");
}

}  // namespace zintra::simtool
