// Scenarios that cannot play as written: each stops with exit code 2 and a message
// naming the file, the line and the field (a JSON pointer), the output folder is left
// as it was, and no message repeats a long input back. Problems visible in the file
// are found before anything plays; those only the playing shows are found as it plays.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/zintra_sim/cli_fixture.h"
#include "tools/zintra-sim/cli.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/scenario_reader.h"

namespace zintra::simtool {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;

// Line 1-3: the profile; the timeline's first step is on line 5.
constexpr char kHead[] =
    R"({"profile": {"user": "Jane Doe <jane@contoso.com>", "stores": [{"folders": [
  {"name": "Inbox", "items": [{"id": "m", "subject": "Hello", "from": "ann@fabrikam.com"}]},
  {"name": "Clients", "type": "contact", "items": [{"id": "ann", "full_name": "Ann Lee", "emails": ["ann@fabrikam.com"]}]}]}]},
"foldersets": [{"contacts": "Clients", "journal": "Journal"}], "timeline": [
)";

std::string Scenario_(const std::string& steps) { return std::string(kHead) + steps + "]}\n"; }

class UnplayableScenarioTest : public testing_support::CliFixture {
 protected:
  // Not quiet: what was played would show.
  int Run(const std::string& file) { return CliFixture::Run({"run", file, "--out", Out()}); }
  // The message of the InputError reading `text` throws ("" when it reads).
  static std::string ReadError(const std::string& text) {
    try {
      ReadScenarioText(text, "s.json", ".");
    } catch (const InputError& e) {
      return e.what();
    }
    return "";
  }
};

struct Case {
  const char* what;
  std::string steps;
  const char* where;  // file:line: field
  const char* problem;
};

class BeforePlayTest : public UnplayableScenarioTest, public ::testing::WithParamInterface<Case> {};

TEST_P(BeforePlayTest, IsFoundWhenReadAndNothingPlays) {
  const Case& c = GetParam();
  std::string message = ReadError(Scenario_(c.steps));
  EXPECT_THAT(message, HasSubstr(c.where));
  EXPECT_THAT(message, HasSubstr(c.problem));
  EXPECT_EQ(Run(Write("s.json", Scenario_(c.steps))), 2);
  EXPECT_THAT(err_, HasSubstr(c.problem));
  EXPECT_THAT(out_, Not(HasSubstr("Scenario:")));
  EXPECT_FALSE(fs::exists(Out()));
}

INSTANTIATE_TEST_SUITE_P(
    Timeline, BeforePlayTest,
    ::testing::Values(
        Case{"second_start", "{\"do\": \"start\"}, {\"do\": \"quit\"},\n{\"do\": \"start\"}",
             "s.json:6: /timeline/2/do", "Outlook is already running (started at line 5)"},
        Case{"click_before_start",
             "{\"do\": \"click\", \"button\": \"note\", \"selection\": [\"ann\"]}",
             "s.json:5: /timeline/0/do", "needs Outlook running"},
        Case{"inspector_before_start", "{\"do\": \"open-inspector\", \"target\": \"m\"}",
             "s.json:5: /timeline/0/do", "no \"start\" step comes before it"},
        Case{"change_after_delete",
             "{\"do\": \"delete\", \"target\": \"m\"},\n{\"do\": \"change\", \"target\": \"m\", "
             "\"set\": {\"subject\": \"x\"}}",
             "s.json:6: /timeline/1/target", "it was deleted at line 5"},
        Case{"selection_before_delivery",
             "{\"do\": \"start\"}, {\"do\": \"click\", \"button\": \"note\", \"selection\": "
             "[\"ann\", \"n\"]},\n{\"do\": \"deliver\", \"item\": {\"id\": \"n\", \"from\": "
             "\"ann@fabrikam.com\"}}",
             "s.json:5: /timeline/1/selection/1", "not in the profile yet"},
        Case{"wait_for_ever", "{\"do\": \"start\"}, {\"do\": \"wait\", \"for\": \"inf\"}",
             "s.json:5: /timeline/1/for", "expected a duration"},
        Case{"wait_not_a_number", "{\"do\": \"wait\", \"for\": \"nan\"}",
             "s.json:5: /timeline/0/for", "expected a duration"},
        Case{"waits_past_a_year",
             "{\"do\": \"wait\", \"for\": \"200d\"},\n{\"do\": \"wait\", \"for\": 1e300}",
             "s.json:6: /timeline/1/for", "past 366 days of virtual time"},
        Case{"at_in_year_9999", "{\"do\": \"quit\", \"at\": \"9999-12-31T23:59:00\"}",
             "s.json:5: /timeline/0/at", "past 366 days"},
        Case{"sensitivity_unknown",
             "{\"do\": \"change\", \"target\": \"m\", \"set\": {\"Sensitivity\": \"secret\"}}",
             "s.json:5: /timeline/0/set/Sensitivity", "expected normal, personal"},
        // A fault on a member the host does not have would never fire.
        Case{"fault_on_no_member_of_its_class",
             "{\"do\": \"fail\", \"member\": \"Item.Sav\", \"error\": 5}",
             "s.json:5: /timeline/0/member", "expected a member of Item: Attachments, Body"},
        Case{"fault_on_no_class", "{\"do\": \"fail\", \"member\": \"Mail.Save\", \"error\": 5}",
             "s.json:5: /timeline/0/member", "the classes being AddressEntry, AddressList"},
        Case{"registry_fault_has_no_wildcard",
             "{\"do\": \"fail\", \"member\": \"Registry.*\", \"error\": 5}",
             "s.json:5: /timeline/0/member", "expected a member of Registry: CloseKey"},
        Case{"fault_in_a_removed_folder",
             "{\"do\": \"remove-folder\", \"folder\": \"clients\"},\n{\"do\": \"fail\", "
             "\"member\": \"Folder.Items\", \"error\": 5, \"folder\": \"Clients\"}",
             "s.json:6: /timeline/1/folder", "it was removed at line 5"},
        Case{"removed_twice",
             "{\"do\": \"remove-folder\", \"folder\": \"Clients\"},\n{\"do\": \"remove-folder\", "
             "\"folder\": \"Clients/VIP\"}",
             "s.json:6: /timeline/1/folder", "is no longer in the profile"},
        Case{"delivery_to_a_removed_inbox",
             "{\"do\": \"remove-folder\", \"folder\": \"Inbox\"},\n{\"do\": \"deliver\", "
             "\"item\": {\"subject\": \"x\"}}",
             "s.json:6: /timeline/1/do", "the folder \"Inbox\" is no longer in the profile"}),
    [](const auto& param_info) { return std::string(param_info.param.what); });

// Problems found only once the profile is built (a folder it lacks) or as the timeline
// plays: still bad input, with nothing written and, for the former, nothing played.
struct PlayCase {
  const char* what;
  std::string steps;
  const char* message;
  bool before_start;
};

class AsItPlaysTest : public UnplayableScenarioTest,
                      public ::testing::WithParamInterface<PlayCase> {};

TEST_P(AsItPlaysTest, StopsWithNothingWritten) {
  const PlayCase& c = GetParam();
  Write("bad.reg",
        "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\X]\n"
        "\"v\"=hex(ffffffffffffffffffff):00\n");
  EXPECT_EQ(Run(Write("s.json", Scenario_(c.steps))), 2);
  EXPECT_THAT(err_, HasSubstr(c.message));
  if (c.before_start) {
    EXPECT_THAT(out_, Not(HasSubstr("[09:00:00] start")));
  }
  EXPECT_FALSE(fs::exists(Out()));
}

INSTANTIATE_TEST_SUITE_P(
    Timeline, AsItPlaysTest,
    ::testing::Values(
        PlayCase{"add_to_a_missing_folder",
                 R"({"do": "start"},
{"do": "add", "folder": "Nowhere", "item": {"subject": "x"}})",
                 "s.json:6: /timeline/1/folder: no folder \"Nowhere\" in the profile", true},
        PlayCase{"fault_in_a_missing_folder",
                 R"({"do": "start"},
{"do": "fail", "member": "Folder.*", "error": 5, "folder": "Nowhere"})",
                 "s.json:6: /timeline/1/folder: no folder \"Nowhere\" in the profile", true},
        PlayCase{"removal_of_a_missing_folder",
                 R"({"do": "start"},
{"do": "remove-folder", "folder": "Nowhere"})",
                 "s.json:6: /timeline/1/folder: no folder \"Nowhere\" in the profile", true},
        // A removed folder named under its store's spelling is only found missing as it
        // plays, and so is an Inbox removed that way when mail arrives.
        PlayCase{"fault_in_a_folder_removed_under_another_spelling",
                 R"({"do": "start"}, {"do": "remove-folder", "folder": "Clients"},
{"do": "fail", "member": "Folder.*", "error": 5, "folder": "Mailbox - Jane Doe/Clients"})",
                 "s.json:6: /timeline/2/folder: no folder \"Mailbox - Jane Doe/Clients\" in the "
                 "profile",
                 false},
        PlayCase{"mail_to_an_inbox_removed_under_another_spelling",
                 R"({"do": "start"}, {"do": "remove-folder", "folder": "Mailbox - Jane Doe/Inbox"},
{"do": "deliver", "item": {"subject": "x"}})",
                 "s.json:6: /timeline/2/do: the Inbox folder was removed", false},
        PlayCase{"removing_a_store", R"({"do": "remove-folder", "folder": "Mailbox - Jane Doe"})",
                 "s.json:5: /timeline/0/folder: \"Mailbox - Jane Doe\" is the top", true},
        // A settings file applied in the middle of the timeline is read only when its step
        // plays.
        PlayCase{"broken_reg_file_of_a_settings_step",
                 R"({"do": "start"}, {"do": "wait", "for": "1m"},
{"do": "settings", "registry": {"files": ["bad.reg"]}})",
                 "bad.reg:4: unknown value type", false},
        // The options page keeps a 16-bit setting in range; a value written around it is
        // the scenario's mistake, named with its step.
        PlayCase{
            "setting_out_of_its_range", R"({"do": "start"},
{"do": "settings", "registry": {"values": [{"key": "HKCU\\Software\\Brellow\\Zintra\\Logging",
  "name": "MaxLogSizeKB", "dword": 40000}]}})",
            "s.json:6: /timeline/1/registry: Overflow: the setting 'Logging\\MaxLogSizeKB' holds "
            "40000",
            false}),
    [](const auto& param_info) { return std::string(param_info.param.what); });

// Outlook quits when its last window closes; a click after that is found as it plays,
// and the error log the add-in made while playing is not left behind.
TEST_F(UnplayableScenarioTest, AStepAfterOutlookQuitStopsAndLeavesTheOutputAsItWas) {
  fs::create_directories(fs::path(Out()) / "errorlog");
  std::ofstream(fs::path(Out()) / "errorlog" / "earlier-run") << "kept";
  std::string file =
      Write("s.json", Scenario_(R"({"do": "start", "windows": "inspector", "target": "m"},
{"do": "close-inspector", "target": "m"},
{"do": "click", "button": "phone-call", "selection": ["ann"]}
)"));
  EXPECT_EQ(Run(file), 2);
  EXPECT_THAT(err_, HasSubstr("s.json:7: /timeline/2/do"));
  EXPECT_THAT(err_, HasSubstr("needs Outlook running, but it has quit"));
  std::vector<std::string> left;
  for (const auto& e : fs::recursive_directory_iterator(Out())) left.push_back(e.path().filename());
  EXPECT_THAT(left, ::testing::UnorderedElementsAre("errorlog", "earlier-run"));
}

TEST_F(UnplayableScenarioTest, MessagesQuoteLongInputOnlyAsAnExcerpt) {
  const std::string big(200000, 'k');
  for (const std::string& text :
       {"{\"" + big + "\": 1}", "{\"name\": \"" + big + "\", \"profile\": \"" + big + "\"}",
        Scenario_("{\"do\": \"delete\", \"target\": \"" + big + "\"}")}) {
    std::string message = ReadError(text);
    EXPECT_THAT(message, HasSubstr("kkk..."));
    EXPECT_LT(message.size(), 1000u);
  }
  // Cut at a character, never inside one.
  EXPECT_EQ(Excerpt(std::string(59, 'a') + "\xC3\xA9" + "b"), std::string(59, 'a') + "...");
  EXPECT_EQ(Excerpt("two\nlines"), "two?lines");
  EXPECT_THAT(ReadError(std::string(100000, '[') + std::string(100000, ']')),
              HasSubstr("nested more than 64 deep"));
}

TEST_F(UnplayableScenarioTest, AnOutlookVersionMustBeItsVersionText) {
  const std::string profile =
      R"("profile": {"user": "j@contoso.com", "stores": [{"folders": []}]})";
  EXPECT_THAT(ReadError("{\"outlook\": {\"version\": \"" + std::string(400, '9') + ".0\"}, " +
                        profile + "}"),
              HasSubstr("/outlook/version: expected Outlook's version text"));
  EXPECT_THAT(ReadError("{\"outlook\": {\"version\": \"11.0 beta\"}, " + profile + "}"),
              HasSubstr("/outlook/version"));
  EXPECT_EQ(ReadError("{\"outlook\": {\"version\": \"16.0.4266.1001\"}, " + profile + "}"), "");
}

TEST_F(UnplayableScenarioTest, ANumberTooLargeForADoubleIsNotValidJson) {
  EXPECT_THAT(ReadError("{\"log_level\": 1" + std::string(400, '0') + "}"),
              HasSubstr("s.json: not valid JSON: number overflow parsing '1000"));
}

TEST_F(UnplayableScenarioTest, ARegistryKeyDeeperThanWindowsAllowsIsRefused) {
  std::string key = "HKCU";
  for (int i = 0; i < 513; ++i) key += "\\\\k";
  EXPECT_THAT(ReadError(R"({"profile": {"user": "j@contoso.com", "stores": [{"folders": []}]},
"registry": {"values": [{"key": ")" +
                        key + R"(", "name": "v", "dword": 1}]}})"),
              HasSubstr("s.json:2: /registry/values/0/key: a key more than 512 levels deep"));
}

// Mail written in an 8-bit charset without saying which is still mail: it imports, and
// the scenario written is valid JSON (bytes that are not UTF-8 become U+FFFD at worst).
TEST_F(UnplayableScenarioTest, EightBitMailImportsIntoValidJson) {
  std::string mail = Write("m.eml",
                           "From: Ren\xE9 <rene@fabrikam.com>\nTo: jane@contoso.com\n"
                           "Subject: Caf\xE9 cr\xE8me\nDate: Mon, 5 Jan 2026 09:00:00 +0000\n\n"
                           "Gr\xFC\xDF"
                           "e\n");
  std::string scenario = (dir_ / "imported.json").string();
  ASSERT_EQ(CliFixture::Run({"import", mail, "--out", scenario, "--quiet"}), 0) << err_;
  std::ifstream in(scenario, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_THAT(text, HasSubstr("Caf"));
  EXPECT_EQ(ReadError(text), "");
}

}  // namespace
}  // namespace zintra::simtool
