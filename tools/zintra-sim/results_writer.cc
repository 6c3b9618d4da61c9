#include "tools/zintra-sim/results_writer.h"

#include "sim/outlook/message_props.h"
#include "src/host/mapi_object.h"
#include "src/logging/zintra_utils.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/item_marks.h"
#include "tools/zintra-sim/item_view.h"
#include "tools/zintra-sim/json_source.h"
#include "tools/zintra-sim/output_files.h"
#include "tools/zintra-sim/profile_facts.h"
#include "tools/zintra-sim/why_report.h"

namespace zintra::simtool {

using nlohmann::ordered_json;
using sim::MessageProps;

namespace {

ordered_json ItemResult(const sim::MessageRecord& m, const ProfileLoader& loader,
                        const ProfileFacts& facts) {
  ordered_json j;
  std::string id = loader.IdOf(m);
  if (!id.empty()) j["id"] = id;
  j["class"] = ItemClassName(m.item_class);
  j["message_class"] = FieldText(m, "message_class");
  j["subject"] = SubjectOf(m);
  std::string from = MessageProps::Text(m, kPrSenderEmailAddress);
  if (!from.empty()) j["from"] = MessageProps::Text(m, kPrSenderName) + " <" + from + ">";
  if (!m.recipients.empty()) {
    j["recipients"] = ordered_json::array();
    for (const auto& r : m.recipients) j["recipients"].push_back(r.name + " <" + r.address + ">");
  }
  j["sensitivity"] = FieldText(m, "sensitivity");
  double received = MessageProps::Date(m, kPrMessageDeliveryTime);
  if (received != kUnsetDate) j["received"] = FormatIsoTime(received);
  j["created"] = FormatIsoTime(MessageProps::Date(m, kPrCreationTime));
  std::string categories = MessageProps::Categories(m);
  if (!categories.empty()) j["categories"] = categories;
  if (m.item_class == ItemClass::kContact) {
    ordered_json emails = ordered_json::array();
    for (const char* f : {"email1", "email2", "email3"}) {
      std::string e = FieldText(m, f);
      if (!e.empty()) emails.push_back(e);
    }
    j["emails"] = emails;
  }
  ItemMarks marks = ReadMarks(m);
  ordered_json mj = ordered_json::object();
  if (marks.tag) mj["Zintra Tag"] = *marks.tag;
  if (marks.logged) mj["Zintra Logged"] = *marks.logged;
  if (marks.shared) mj["Zintra Shared"] = *marks.shared;
  if (marks.logged_copies) mj["logged_copies"] = marks.logged_copies;
  if (marks.shared_copies) mj["shared_copies"] = marks.shared_copies;
  // The named marks and kind fields, by the names expectations use.
  for (const char* f :
       {kPropZintraLastAudited, "logged_copy_folders", "logged_store_ids", "shared_copy_folders",
        "shared_store_ids", "journal_type", "owner", "ownership", "attachments"}) {
    std::string v = MarkText(m, f, loader).value_or("");
    if (!v.empty()) mj[f] = v;
  }
  j["marks"] = mj;
  if (!marks.links.empty()) j["links"] = marks.links;
  CopyOf copy = facts.CopyInfo(m);
  if (copy.original) {
    ordered_json c;
    c["kind"] = copy.shared ? "shared" : "logged";
    c["folder"] = ProfileFacts::FolderOf(*copy.original);
    c["subject"] = SubjectOf(*copy.original);
    std::string of = loader.IdOf(*copy.original);
    if (!of.empty()) c["id"] = of;
    j["copy_of"] = c;
  }
  return j;
}

ordered_json FolderResult(const sim::FolderRecord& f, const ProfileLoader& loader,
                          const ProfileFacts& facts) {
  ordered_json j;
  j["name"] = f.name;
  j["type"] = FolderTypeName(f.default_item_type);
  ordered_json items = ordered_json::array();
  for (const auto& m : f.messages) {
    if (!m->deleted) items.push_back(ItemResult(*m, loader, facts));
  }
  j["items"] = items;
  ordered_json folders = ordered_json::array();
  for (const auto& c : f.children) {
    if (!c->deleted) folders.push_back(FolderResult(*c, loader, facts));
  }
  if (!folders.empty()) j["folders"] = folders;
  return j;
}

}  // namespace

ordered_json ResultProfileJson(const sim::Profile& profile, const ProfileLoader& loader) {
  ProfileFacts facts(profile);
  ordered_json j;
  j["user"] = profile.CurrentUser().name + " <" + profile.CurrentUser().smtp + ">";
  j["outlook_version"] = profile.Version();
  j["stores"] = ordered_json::array();
  for (const auto& store : profile.Stores()) {
    ordered_json s;
    s["name"] = store->name;
    s["kind"] = store->is_public ? "public" : store->is_default ? "mailbox" : "personal";
    s["folders"] = ordered_json::array();
    for (const auto& f : store->root->children) {
      if (!f->deleted) s["folders"].push_back(FolderResult(*f, loader, facts));
    }
    j["stores"].push_back(s);
  }
  return j;
}

ordered_json ReportJson(const Scenario& scenario, const RunResult& result) {
  ordered_json j;
  j["scenario"] = scenario.name;
  if (!scenario.source.empty()) j["file"] = scenario.source;
  j["items"] = WhyJson(result.why);
  ordered_json ex = ordered_json::array();
  for (const auto& o : result.expectations) {
    ordered_json e;
    e["line"] = o.desc.source_line;
    e["met"] = o.met;
    e["detail"] = o.detail;
    ex.push_back(e);
  }
  j["expectations"] = ex;
  j["error_log"] = result.error_log_path;
  j["exit_code"] = result.exit_code;
  return j;
}

void WriteResults(const std::filesystem::path& dir, const Scenario& scenario,
                  const sim::Profile& profile, const ProfileLoader& loader,
                  sim::SimOutlook& outlook, const RunResult& result) {
  ordered_json log = ordered_json::array();
  std::string text;
  for (const auto& l : outlook.error_logs.Created()) {
    for (const auto& row : l->Rows()) {
      ordered_json r;
      r["at"] = row.logged_at;
      r["kind"] = row.kind;
      r["description"] = row.description;
      if (row.error_number != 0) {
        r["number"] = row.error_number;
        r["source"] = row.source;
        r["module"] = row.module;
        r["procedure"] = row.procedure;
        if (!row.trail.empty()) r["trail"] = row.trail;
      }
      log.push_back(r);
      text += row.logged_at + "  " + row.kind + "  " + row.description +
              (row.error_number ? " (" + std::to_string(row.error_number) + ", " + row.source + ")"
                                : "") +
              "\n";
    }
  }
  OutputFiles files;
  files.Add((dir / "profile.json").string(), JsonText(ResultProfileJson(profile, loader)) + "\n");
  files.Add((dir / "log.json").string(), JsonText(log) + "\n");
  files.Add((dir / "log.txt").string(), text);
  files.Add((dir / "report.json").string(), JsonText(ReportJson(scenario, result)) + "\n");
  files.Add((dir / "messages.json").string(), JsonText(MessagesJson(result.host)) + "\n");
  files.Add((dir / "errors.json").string(), JsonText(ErrorsJson(result.host)) + "\n");
  files.Commit();
}

}  // namespace zintra::simtool
