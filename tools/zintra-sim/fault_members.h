// FaultMembers: the members of the simulated host that a "fail" step can name, by class:
// Outlook's and the MAPI library's ("Item.Save", "MapiTable.GetRows"), the registry's
// ("Registry.QueryValue") and the disk's ("Files.ReadAll"). A fault naming anything else
// would never fire, so the reader refuses it and lists what it could have named.
#pragma once

#include <string>

namespace zintra::simtool {

// "Class.Member", or "Class.*" for a class of Outlook or the MAPI library.
bool IsFaultMember(const std::string& member);
// What the reader says instead: the class's members when the class is known, else the
// classes.
std::string FaultMemberChoices(const std::string& member);
// Registry and disk members count their calls apart from Outlook's and cannot be limited
// to one item or folder.
bool IsRegistryOrFileMember(const std::string& member);

}  // namespace zintra::simtool
