// Scenario files: what a good file reads as, and how each kind of bad input is named.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/support/error_of.h"
#include "tools/zintra-sim/demo_scenario.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/scenario_writer.h"

namespace zintra::simtool {
namespace {

using ::testing::HasSubstr;

constexpr char kGood[] = R"({
  "name": "two mails",
  "outlook": {"version": "10.0.2627"},
  "profile": {
    "user": "Jane Doe <jane@contoso.com>",
    "stores": [{"kind": "mailbox", "folders": [
      {"name": "Inbox", "items": [
        {"id": "q", "subject": "Quote", "from": "Ann Lee <ann@fabrikam.com>",
         "to": ["jane@contoso.com"], "sensitivity": "private", "time": "2026-01-02T08:30:00",
         "links": ["ann"], "properties": {"Zintra Logged": false}}]},
      {"name": "Clients", "type": "contact", "items": [
        {"id": "ann", "full_name": "Ann Lee", "emails": ["ann@fabrikam.com", "*@fabrikam.com"]}]}]}]
  },
  "registry": {"values": [{"key": "HKCU\\Software\\Brellow\\Zintra", "name": "ScanInbox", "dword": false}]},
  "foldersets": [{"contacts": "Clients", "journal": "Journal"}],
  "timeline": [{"do": "start"}, {"do": "wait", "for": "5m"},
               {"do": "change", "target": "q", "set": {"subject": "Quote 2"}, "at": "2026-01-05T10:00:00"},
               {"do": "quit"}],
  "expect": [{"item": "q", "match": {"Zintra Logged": "False"}},
             {"log": "skipped", "present": false}, {"total": "logged", "equals": 0}]
})";

TEST(ScenarioReaderTest, ReadsEveryPartOfAGoodFile) {
  Scenario s = ReadScenarioText(kGood, "good.json", ".");
  EXPECT_EQ(s.name, "two mails");
  EXPECT_EQ(s.outlook_version, "10.0.2627");
  EXPECT_EQ(s.profile.user.smtp, "jane@contoso.com");
  const FolderSpec& inbox = s.profile.stores[0].folders[0];
  const ItemSpec& q = inbox.items[0];
  EXPECT_EQ(q.item_class, ItemClass::kMail);
  EXPECT_EQ(q.from->name, "Ann Lee");
  EXPECT_EQ(q.sensitivity, kOlPrivate);
  EXPECT_EQ(FormatIsoTime(q.time), "2026-01-02T08:30:00");
  EXPECT_EQ(q.properties.at("Zintra Logged"), "False");
  EXPECT_EQ(q.source_line, 8);
  const ItemSpec& ann = s.profile.stores[0].folders[1].items[0];
  EXPECT_EQ(ann.item_class, ItemClass::kContact);  // the folder's kind
  EXPECT_EQ(ann.emails.size(), 2u);
  EXPECT_EQ(s.registry.values[0].dword, 0u);
  EXPECT_EQ(s.foldersets[0].journal, "Journal");
  // "at" becomes a wait until that moment before its step.
  ASSERT_EQ(s.timeline.size(), 5u);
  EXPECT_EQ(s.timeline[1].seconds, 300);
  EXPECT_EQ(s.timeline[2].kind, StepKind::kWait);
  EXPECT_EQ(FormatIsoTime(s.timeline[2].until), "2026-01-05T10:00:00");
  EXPECT_EQ(s.timeline[3].changes.at("subject"), "Quote 2");
  ASSERT_EQ(s.expect.size(), 3u);
  EXPECT_FALSE(s.expect[1].present);
  EXPECT_EQ(s.expect[2].count, 0);
}

// The good file and the demo (every kind of step it plays), written and read back.
TEST(ScenarioReaderTest, WrittenScenariosReadBackTheSame) {
  for (const char* text : {kGood, kDemoScenario}) {
    Scenario s = ReadScenarioText(text, "s.json", ".");
    SCOPED_TRACE(s.name);
    Scenario again = ReadScenarioText(ScenarioJson(s).dump(2), "again.json", ".");
    ASSERT_EQ(again.timeline.size(), s.timeline.size());
    for (size_t i = 0; i < s.timeline.size(); ++i) {
      const StepSpec& a = s.timeline[i];
      const StepSpec& b = again.timeline[i];
      EXPECT_EQ(b.kind, a.kind) << i;
      EXPECT_EQ(b.until, a.until) << i;
      EXPECT_EQ(b.seconds, a.seconds) << i;
      EXPECT_EQ(b.target, a.target) << i;
      EXPECT_EQ(b.changes, a.changes) << i;
      EXPECT_EQ(b.folder, a.folder) << i;
      ASSERT_EQ(b.item.has_value(), a.item.has_value()) << i;
      if (a.item) {
        EXPECT_EQ(b.item->subject, a.item->subject) << i;
      }
      EXPECT_EQ(b.button, a.button) << i;
      EXPECT_EQ(b.selection, a.selection) << i;
      EXPECT_EQ(b.fill, a.fill) << i;
      EXPECT_EQ(b.then, a.then) << i;
      EXPECT_EQ(b.letter, a.letter) << i;
      EXPECT_EQ(b.confirm, a.confirm) << i;
      EXPECT_EQ(b.registry.values.size(), a.registry.values.size()) << i;
    }
  }
  Scenario s = ReadScenarioText(kGood, "good.json", ".");
  Scenario again = ReadScenarioText(ScenarioJson(s).dump(2), "again.json", ".");
  const ItemSpec& a = s.profile.stores[0].folders[0].items[0];
  const ItemSpec& b = again.profile.stores[0].folders[0].items[0];
  EXPECT_EQ(a.subject, b.subject);
  EXPECT_EQ(a.from, b.from);
  EXPECT_EQ(a.to, b.to);
  EXPECT_EQ(a.time, b.time);
  EXPECT_EQ(a.sensitivity, b.sensitivity);
  EXPECT_EQ(a.links, b.links);
  EXPECT_EQ(a.properties, b.properties);
  EXPECT_EQ(again.foldersets[0].contacts, "Clients");
  EXPECT_EQ(again.registry.values[0].name, "ScanInbox");
}

TEST(ScenarioReaderTest, ReadsHostStepsMarksFilesAndHostExpectations) {
  Scenario s = ReadScenarioText(R"({
    "profile": {"user": "j@c.com", "stores": [{"folders": [
      {"name": "Tasks", "items": [{"id": "t", "subject": "Plan",
                                   "marks": {"owner": "Tom", "ownership": "delegated",
                                             "logged_copies": ["t"], "store_ids": false}}]}]}]},
    "files": [{"path": "C:\\P\\z.txt", "text": "x", "read_only": true}, {"folder": "D:\\Logs"}],
    "timeline": [
      {"do": "fail", "member": "MapiTable.GetRows", "error": "0x80040115", "after": 2},
      {"do": "answer", "message_box": ["yes", "no"], "optional": "tick"},
      {"do": "add", "folder": "Contacts", "item": {"full_name": "Ann", "emails": ["a@b.com"]}},
      {"do": "delete", "target": "t", "hard": true},
      {"do": "quit", "during": "job", "job": "Process"},
      {"do": "check", "expect": [{"message": 3000, "icon": "critical"}]}],
    "expect": [{"error_record": {"number": 5, "trail": "-->"}, "count": 2},
               {"messages": [3000, {"dialog": 2}]},
               {"log_order": ["a", "b"]}, {"file": "C:\\P\\z.txt", "exists": false}]
  })",
                                "good.json", ".");
  const ItemSpec& task = s.profile.stores[0].folders[0].items[0];
  EXPECT_EQ(task.item_class, ItemClass::kTask);  // the Tasks folder's kind without a type
  ASSERT_TRUE(task.marks);
  EXPECT_EQ(task.marks->ownership, 1);
  EXPECT_FALSE(task.marks->store_ids);
  ASSERT_EQ(s.files.size(), 2u);
  EXPECT_TRUE(s.files[0].read_only);
  EXPECT_TRUE(s.files[1].folder);
  ASSERT_EQ(s.timeline.size(), 6u);
  EXPECT_EQ(s.timeline[0].fault.error, static_cast<int32_t>(0x80040115u));
  EXPECT_EQ(s.timeline[0].fault.mode, "after");
  EXPECT_EQ(s.timeline[1].answers.message_box, (std::vector<int32_t>{6, 7}));  // IDYES, IDNO
  EXPECT_EQ(s.timeline[1].answers.optional, std::vector<std::string>{"tick"});
  // An added item without a class is settled by its folder when played.
  EXPECT_FALSE(s.timeline[2].item->class_given);
  EXPECT_TRUE(s.timeline[3].hard);
  EXPECT_TRUE(s.timeline[4].during);
  EXPECT_EQ(s.timeline[4].during_job, "Process");
  ASSERT_EQ(s.timeline[5].checks.size(), 1u);
  EXPECT_EQ(s.timeline[5].checks[0].host.fields.at("text"),
            "You must be running Outlook 2000 or later to use this add-in.");
  EXPECT_EQ(s.expect[0].host.fields.at("number"), "5");
  EXPECT_EQ(s.expect[1].host.dialogs, (std::vector<int32_t>{0, 2}));
  EXPECT_EQ(s.expect[1].host.texts[1], "");  // any text
  EXPECT_EQ(s.expect[2].kind, ExpectKind::kLogOrder);
  EXPECT_EQ(s.expect[3].host.fields.at("exists"), "False");
}

// Every kind of step, with the fields each may carry, written and read back.
TEST(ScenarioReaderTest, EveryStepKindIsWrittenBackTheSame) {
  Scenario s = ReadScenarioText(R"({
    "profile": {"user": "Jane Doe <j@c.com>", "stores": [{"folders": [
      {"name": "Inbox", "items": [{"id": "m", "subject": "Hi", "from": "a@b.com",
        "attachments": [{"name": "x.doc", "link": true}],
        "marks": {"Zintra Last Audited": "2026-01-02T08:00:00", "logged_copies": ["m", "m"],
                  "store_ids": false, "journal_type": "Phone Call"}}]},
      {"name": "Clients", "type": "contact", "items": [{"id": "ann", "full_name": "Ann", "emails": ["a@b.com"]}]},
      {"name": "Orders"}]}]},
    "files": [{"path": "C:\\P\\z.txt", "text": "x", "unopenable": true}, {"folder": "D:\\Logs"}],
    "timeline": [
      {"do": "fail", "member": "Registry.QueryValue", "error": 5, "after": 3},
      {"do": "start", "windows": "inspector", "target": "m", "addin": false},
      {"do": "load-addin"},
      {"do": "deliver", "item": {"id": "d", "class": "meeting", "from": "a@b.com"}, "folder": "Orders"},
      {"do": "send", "item": {"id": "s", "to": "a@b.com"}},
      {"do": "add", "folder": "Clients", "item": {"full_name": "Bo", "emails": ["bo@b.com"]}},
      {"do": "change", "target": "d", "set": {"subject": "Moved"}, "at": "2026-01-05T10:00:00"},
      {"do": "open-inspector", "target": "d"},
      {"do": "window-message", "target": "d", "message": 24, "wparam": 1},
      {"do": "close-inspector", "target": "d"},
      {"do": "click", "button": "phone-call", "selection": ["ann"], "confirm": false, "then": "discard"},
      {"do": "settings", "registry": {"values": [{"key": "HKCU\\Software\\Brellow\\Zintra", "name": "ScanInbox", "dword": 0}]}, "multi_user": true, "reset_messages": true},
      {"do": "answer", "message_box": ["retry", "ignore"], "optional": ["untick", "close"]},
      {"do": "fail", "member": "Item.Save", "error": "0x80004005", "text": "No", "call": 2, "target": "s"},
      {"do": "fail", "member": "Folder.*", "error": -5, "folder": "Orders"},
      {"do": "heal"},
      {"do": "remove-folder", "folder": "Orders"},
      {"do": "check", "expect": [{"dialog": 2, "present": false}, {"messages": [3000, {"dialog": 1}]},
                                 {"file": "C:\\P\\z.txt", "contains": "y", "present": false}]},
      {"do": "delete", "target": "s", "hard": true, "during": "job", "job": "Process"},
      {"do": "wait", "for": "1m"},
      {"do": "unload-addin"},
      {"do": "quit"}],
    "expect": [{"error_record": {"number": 5, "trail": "-->"}, "count": 2}, {"error_log": "D:\\Logs\\x"},
               {"log_order": ["a", "b"]}, {"registry": "HKCU\\X", "name": "n", "value": 1},
               {"total": "copies", "equals": 3}, {"log": "z", "present": false},
               {"folder": "Orders", "match": {"subject": "*"}, "count": 0}]
  })",
                                "every.json", ".");
  std::set<StepKind> kinds;
  for (const StepSpec& step : s.timeline) kinds.insert(step.kind);
  EXPECT_EQ(kinds.size(), 20u);  // every kind of step there is
  const std::string written = ScenarioJson(s).dump(2);
  Scenario again = ReadScenarioText(written, "again.json", ".");
  EXPECT_EQ(ScenarioJson(again).dump(2), written);
  ASSERT_EQ(again.timeline.size(), s.timeline.size());
  EXPECT_EQ(again.timeline[0].fault.mode, "after");
  EXPECT_EQ(again.timeline[0].fault.n, 3);
  EXPECT_FALSE(again.timeline[1].addin);
  EXPECT_EQ(again.timeline[1].windows, "inspector");
  EXPECT_EQ(again.timeline[6].until, s.timeline[6].until);  // "at" of the change
  EXPECT_EQ(again.timeline[9].wparam, 1);
  EXPECT_TRUE(again.timeline[12].reset_messages);
  EXPECT_EQ(again.timeline[13].answers.message_box, s.timeline[13].answers.message_box);
  EXPECT_EQ(again.timeline[13].answers.optional, s.timeline[13].answers.optional);
  EXPECT_EQ(again.timeline[14].fault.error, static_cast<int32_t>(0x80004005u));
  EXPECT_EQ(again.timeline[14].fault.target, "s");
  EXPECT_EQ(again.timeline[15].fault.folder, "Orders");
  EXPECT_EQ(again.timeline[18].checks[1].host.dialogs, (std::vector<int32_t>{0, 1}));
  EXPECT_TRUE(again.timeline[19].hard);
  EXPECT_EQ(again.timeline[19].during_job, "Process");
  EXPECT_EQ(again.timeline[3].item->item_class, ItemClass::kMeeting);
  EXPECT_FALSE(again.timeline[5].item->class_given);  // settled by its folder when played
  const ItemSpec& m = again.profile.stores[0].folders[0].items[0];
  ASSERT_TRUE(m.marks);
  EXPECT_EQ(m.marks->logged_copies, (std::vector<std::string>{"m", "m"}));
  EXPECT_FALSE(m.marks->store_ids);
  EXPECT_TRUE(m.attachments[0].link);
  ASSERT_EQ(again.files.size(), 2u);
  EXPECT_TRUE(again.files[0].unopenable);
  EXPECT_EQ(again.expect.size(), s.expect.size());
}

struct BadCase {
  const char* what;
  std::string text;
  int line;
  const char* field;
  const char* message;
};

class BadScenarioTest : public ::testing::TestWithParam<BadCase> {};

TEST_P(BadScenarioTest, NamesTheLineFieldAndWhatWasExpected) {
  const BadCase& c = GetParam();
  std::optional<InputError> e =
      Raised<InputError>([&] { ReadScenarioText(c.text, "bad.json", "."); });
  ASSERT_TRUE(e) << "accepted: " << c.what;
  EXPECT_EQ(e->file(), "bad.json");
  EXPECT_EQ(e->line(), c.line) << e->what();
  EXPECT_EQ(e->field(), c.field) << e->what();
  EXPECT_THAT(e->what(), HasSubstr(c.message));
}

// A file whose profile has no folders (the rest from line 2 on), or has the given ones or
// an Inbox with the given items (from line 2 on).
constexpr char kUser[] = R"({"profile": {"user": "j@c.com", "stores": [{"folders": [)";
std::string Top(const std::string& rest) { return kUser + std::string("]}]},\n") + rest + "}"; }
std::string Folders(const std::string& folders) { return kUser + ("\n" + folders) + "]}]}}"; }
std::string Inbox(const std::string& items) {
  return Folders(R"({"name": "Inbox", "items": [)" + items + "]}");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadScenarioTest,
    ::testing::Values(
        BadCase{"syntax", "{\n  \"name\": \"x\",\n  ]\n}", 3, "", "not valid JSON"},
        BadCase{"unknown top field", "{\n \"profile\": {},\n \"timelime\": []\n}", 3, "/timelime",
                "unknown field"},
        BadCase{"missing profile", "{\n \"name\": \"x\"\n}", 1, "/", "\"profile\" is required"},
        BadCase{"bad sensitivity", Inbox(R"(
{"subject": "a",
 "sensitivity": "secret"})"),
                4, "/profile/stores/0/folders/0/items/0/sensitivity", "expected normal"},
        BadCase{"bad class", Inbox(R"({"class": 7})"), 2,
                "/profile/stores/0/folders/0/items/0/class", "expected text, found the number 7"},
        BadCase{"bad address", Inbox(R"({"from": "Ann"})"), 2,
                "/profile/stores/0/folders/0/items/0/from", "expected an address"},
        BadCase{"unknown link", Inbox(R"(
{"links": ["nobody"]})"),
                3, "links", "no item has the id \"nobody\""},
        BadCase{"duplicate id", Inbox(R"({"id": "a"},
{"id": "a"})"),
                3, "id", "used twice"},
        BadCase{"bad step", Top(R"("timeline": [
{"do": "jump"}])"),
                3, "/timeline/0/do", "expected one of: start"},
        BadCase{"bad duration", Top(R"("timeline": [{"do": "wait",
 "for": "soon"}])"),
                3, "/timeline/0/for", "expected a duration"},
        BadCase{"target unknown", Top(R"("timeline": [
{"do": "delete", "target": "x"}])"),
                3, "target", "no item has the id \"x\""},
        BadCase{"missing reg file", Top(R"("registry": {"files": [
"nope.reg"]})"),
                3, "/registry/files/0", "no such .reg file"},
        BadCase{"two expectation kinds", Top(R"("expect": [
{"log": "a", "total": "logged"}])"),
                3, "/expect/0", "exactly one of"},
        BadCase{"failing member unknown", Top(R"("timeline": [{"do": "fail",
"member": "Item", "error": 5}])"),
                3, "/timeline/0/member", "expected a member of Item: Attachments, Body"},
        BadCase{"showing named by nothing", Top(R"("expect": [
{"messages": ["a",
{}]}])"),
                4, "/expect/0/messages/1", "expected \"message\", \"dialog\" or both"},
        BadCase{"dialog of a message box", Top(R"("expect": [
{"dialog": 2,
"kind": "box"}])"),
                4, "/expect/0/kind", "only an optional message has a dialog number"},
        BadCase{"failing on a call and after calls", Top(R"("timeline": [
{"do": "fail", "member": "Item.Save", "error": 5, "call": 1, "after": 2}])"),
                3, "/timeline/0", "not both"},
        BadCase{"registry failure for one item", Top(R"("timeline": [
{"do": "fail", "member": "Registry.OpenKey", "error": 5, "folder": "Inbox"}])"),
                3, "/timeline/0", "only members of Outlook"},
        BadCase{"error number zero", Top(R"("timeline": [{"do": "fail", "member": "Item.Save",
"error": 0}])"),
                3, "/timeline/0/error", "non-zero error number"},
        BadCase{"optional answer unknown", Top(R"("timeline": [{"do": "answer", "optional": [
"maybe"]}])"),
                3, "/timeline/0/optional/0", "expected ok, tick, untick or close"},
        BadCase{"message kind unknown", Top(R"("expect": [{"message": "x",
"kind": "popup"}])"),
                3, "/expect/0/kind", "expected box, optional, form"},
        BadCase{"error column unknown", Top(R"("expect": [{"error_record": {
"colour": "red"}}])"),
                3, "/expect/0/error_record/colour", "expected one of the error log's columns"},
        BadCase{"string number unknown", Top(R"("expect": [{"messages": [
99999999]}])"),
                3, "/expect/0/messages/0", "no string has that number"},
        BadCase{"ownership unknown", Folders(R"({"name": "Tasks", "items": [{"marks": {
"ownership": "mine"}}]})"),
                3, "/profile/stores/0/folders/0/items/0/marks/ownership",
                "expected new, delegated"},
        BadCase{"copy list names no item", Inbox(R"(
{"marks": {"logged_copies": ["x"]}})"),
                3, "marks", "no item has the id \"x\""},
        BadCase{"file path relative", Top(R"("files": [{
"path": "x.txt"}])"),
                3, "/files/0/path", "expected a full Windows path"},
        BadCase{"file expectation of two kinds", Top(R"("expect": [
{"file": "C:\\a.txt", "content": "", "exists": true}])"),
                3, "/expect/0", "exactly one of \"content\""},
        BadCase{"a wait inside a job", Top(R"("timeline": [{"do": "wait", "for": 1,
"during": "job"}])"),
                3, "/timeline/0/during", "cannot happen inside a job"},
        BadCase{"check with a bad expectation",
                Top(R"("timeline": [{"do": "check", "expect": [{"log": "a",
"colour": 1}]}])"),
                3, "/timeline/0/expect/0/colour", "unknown field"}),
    [](const auto& param_info) {
      std::string n = param_info.param.what;
      for (char& ch : n) ch = std::isalnum(static_cast<unsigned char>(ch)) ? ch : '_';
      return n;
    });

TEST(ScenarioTextTest, TimesDurationsAndPeople) {
  EXPECT_EQ(FormatIsoTime(*ParseIsoTime("2026-01-05T09:30")), "2026-01-05T09:30:00");
  EXPECT_EQ(FormatIsoTime(*ParseIsoTime("2026-01-05")), "2026-01-05T00:00:00");
  for (const char* bad :
       {"2026-13-01", "2026-01-05T25:00", "05/01/2026", "2026-01-05T09:30:00+02"}) {
    EXPECT_FALSE(ParseIsoTime(bad)) << bad;
  }
  EXPECT_EQ(*ParseDuration("90s"), 90);
  EXPECT_EQ(*ParseDuration("10m"), 600);
  EXPECT_EQ(*ParseDuration("1.5h"), 5400);
  EXPECT_FALSE(ParseDuration("-5m"));
  EXPECT_FALSE(ParseDuration("5 weeks"));
  auto ex = ParsePersonText("Jo Bloggs </o=CONTOSO/ou=First/cn=Recipients/cn=JBLOGGS>");
  ASSERT_TRUE(ex);
  EXPECT_EQ(ex->exchange, "/o=CONTOSO/ou=First/cn=Recipients/cn=JBLOGGS");
  EXPECT_TRUE(ex->smtp.empty());
  auto quoted = ParsePersonText("\"Lee, Ann\" <ann@fabrikam.com>");
  ASSERT_TRUE(quoted);
  EXPECT_EQ(quoted->name, "Lee, Ann");
  EXPECT_FALSE(ParsePersonText("Ann Lee"));
}

}  // namespace
}  // namespace zintra::simtool
