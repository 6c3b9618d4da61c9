// The members a "fail" step may name are the members the simulated host checks for
// faults: read here from the host's own sources, so that a member added to the host
// cannot be missing from what the reader accepts.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "tools/zintra-sim/fault_members.h"

namespace zintra::simtool {
namespace {

namespace fs = std::filesystem;

// Every match of `pattern`'s first group (joined to the second with a dot when that is
// not empty) in the sources below `dir`.
std::set<std::string> Literals(const fs::path& dir, const std::regex& pattern) {
  std::set<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(dir)) {
    const std::string ext = entry.path().extension().string();
    if (ext != ".cc" && ext != ".h") continue;
    std::ifstream in(entry.path());
    std::stringstream text;
    text << in.rdbuf();
    const std::string s = text.str();
    for (std::sregex_iterator m(s.begin(), s.end(), pattern), end; m != end; ++m) {
      found.insert((*m)[2].length() > 0 ? (*m)[1].str() + "." + (*m)[2].str() : (*m)[1].str());
    }
  }
  return found;
}

TEST(FaultMembersTest, EveryMemberTheSimulatedHostChecksCanFail) {
  const fs::path sim = fs::path(ZINTRA_SOURCE_DIR) / "sim";
  // "Item.Save", "MapiTable.GetRows", ...: a class of Outlook or the library is one whose
  // "Class.*" is accepted.
  int outlook = 0;
  for (const std::string& name :
       Literals(sim / "outlook", std::regex("\"([A-Z][A-Za-z]+)\\.([A-Z][A-Za-z]+)\""))) {
    if (!IsFaultMember(name.substr(0, name.find('.')) + ".*")) continue;
    EXPECT_TRUE(IsFaultMember(name)) << name;
    ++outlook;
  }
  for (const std::string& name :
       Literals(sim / "mapi", std::regex("\"([A-Z][A-Za-z]+)\\.([A-Z][A-Za-z]+)\""))) {
    if (!IsFaultMember(name.substr(0, name.find('.')) + ".*")) continue;
    EXPECT_TRUE(IsFaultMember(name)) << name;
    ++outlook;
  }
  EXPECT_GT(outlook, 150);
  const auto registry = Literals(sim / "registry", std::regex("Injected\\(\"([A-Za-z]+)\"\\)()"));
  EXPECT_EQ(registry.size(), 10u);
  for (const std::string& name : registry) EXPECT_TRUE(IsFaultMember("Registry." + name)) << name;
  const auto files = Literals(sim / "files", std::regex("CheckFault\\(\"([A-Za-z]+)\"()"));
  EXPECT_EQ(files.size(), 5u);
  for (const std::string& name : files) EXPECT_TRUE(IsFaultMember("Files." + name)) << name;
}

TEST(FaultMembersTest, NamesNoHostHasAreRefusedWithWhatCouldBeNamed) {
  EXPECT_TRUE(IsFaultMember("Folder.*"));
  EXPECT_FALSE(IsFaultMember("Registry.*"));  // the registry's calls are failed one by one
  EXPECT_FALSE(IsFaultMember("Item.save"));
  EXPECT_FALSE(IsFaultMember("Item"));
  EXPECT_FALSE(IsFaultMember(".Save"));
  EXPECT_EQ(FaultMemberChoices("Files.Read"),
            "expected a member of Files: Append, MakeFolder, ReadAll, Remove, WriteAll");
  EXPECT_NE(FaultMemberChoices("Link.Nam").find("Item, Name or * (every member)"),
            std::string::npos);
}

}  // namespace
}  // namespace zintra::simtool
