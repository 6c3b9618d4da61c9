#include "tools/zintra-sim/scenario_writer.h"

#include "tools/zintra-sim/input_error.h"

namespace zintra::simtool {

using nlohmann::ordered_json;

ordered_json PersonJson(const PersonSpec& p) {
  // The short form when it reads back the same.
  if (p.smtp.empty() != p.exchange.empty()) {
    std::string address = PersonText(p);
    std::string text = p.name == address ? address : p.name + " <" + address + ">";
    if (ParsePersonText(text) == p) return text;
  }
  ordered_json j;
  j["name"] = p.name;
  if (!p.smtp.empty()) j["smtp"] = p.smtp;
  if (!p.exchange.empty()) j["exchange"] = p.exchange;
  return j;
}

namespace {

ordered_json People(const std::vector<PersonSpec>& people) {
  ordered_json a = ordered_json::array();
  for (const PersonSpec& p : people) a.push_back(PersonJson(p));
  return a;
}

ordered_json FolderJson(const FolderSpec& f) {
  ordered_json j;
  j["name"] = f.name;
  if (f.item_type != kOlMailItem) j["type"] = FolderTypeName(f.item_type);
  if (!f.folders.empty()) {
    j["folders"] = ordered_json::array();
    for (const FolderSpec& sub : f.folders) j["folders"].push_back(FolderJson(sub));
  }
  if (!f.items.empty()) {
    j["items"] = ordered_json::array();
    for (const ItemSpec& item : f.items) j["items"].push_back(ItemJson(item));
  }
  return j;
}

}  // namespace

ordered_json ItemJson(const ItemSpec& item) {
  ordered_json j;
  if (!item.id.empty()) j["id"] = item.id;
  j["class"] = ItemClassName(item.item_class);
  if (!item.message_class.empty()) j["message_class"] = item.message_class;
  if (!item.subject.empty()) j["subject"] = item.subject;
  if (!item.full_name.empty() && item.full_name != item.subject) j["full_name"] = item.full_name;
  if (item.from) j["from"] = PersonJson(*item.from);
  if (!item.to.empty()) j["to"] = People(item.to);
  if (!item.cc.empty()) j["cc"] = People(item.cc);
  if (!item.bcc.empty()) j["bcc"] = People(item.bcc);
  if (item.sensitivity != kOlNormal) j["sensitivity"] = SensitivityName(item.sensitivity);
  if (item.time != kUnsetDate) j["time"] = FormatIsoTime(item.time);
  if (!item.categories.empty()) j["categories"] = item.categories;
  if (!item.emails.empty()) j["emails"] = item.emails;
  if (!item.company.empty()) j["company"] = item.company;
  if (!item.links.empty()) j["links"] = item.links;
  if (!item.attachments.empty()) {
    j["attachments"] = ordered_json::array();
    for (const AttachmentSpec& a : item.attachments) {
      ordered_json aj;
      aj["name"] = a.name;
      if (!a.content_type.empty()) aj["content_type"] = a.content_type;
      aj["size"] = a.size;
      j["attachments"].push_back(aj);
    }
  }
  if (!item.properties.empty()) j["properties"] = item.properties;
  if (!item.body.empty()) j["body"] = item.body;
  return j;
}

ordered_json ProfileJson(const ProfileSpec& profile) {
  ordered_json j;
  j["user"] = PersonJson(profile.user);
  if (!profile.directory.empty()) j["directory"] = People(profile.directory);
  j["stores"] = ordered_json::array();
  for (const StoreSpec& s : profile.stores) {
    ordered_json sj;
    if (!s.name.empty()) sj["name"] = s.name;
    sj["kind"] = s.kind == StoreKind::kMailbox    ? "mailbox"
                 : s.kind == StoreKind::kPersonal ? "personal"
                                                  : "public";
    sj["folders"] = ordered_json::array();
    for (const FolderSpec& f : s.folders) sj["folders"].push_back(FolderJson(f));
    j["stores"].push_back(sj);
  }
  return j;
}

ordered_json RegistryJson(const RegistrySpec& registry) {
  ordered_json r;
  if (!registry.reg_files.empty()) r["files"] = registry.reg_files;
  r["values"] = ordered_json::array();
  for (const RegValueSpec& v : registry.values) {
    ordered_json vj;
    vj["key"] = v.key;
    vj["name"] = v.name;
    if (v.type == RegType::kDword) {
      vj["dword"] = v.dword;
    } else if (v.type == RegType::kString) {
      vj["string"] = v.text;
    } else {
      vj["multi"] = v.texts;
    }
    r["values"].push_back(vj);
  }
  return r;
}

ordered_json StepJson(const StepSpec& step) {
  ordered_json j;
  j["do"] = StepName(step.kind);
  switch (step.kind) {
    case StepKind::kStart:
      if (step.windows != "explorer") j["windows"] = step.windows;
      if (!step.addin) j["addin"] = false;
      if (!step.target.empty()) j["target"] = step.target;
      break;
    case StepKind::kDeliver:
    case StepKind::kSend:
    case StepKind::kAdd:
      if (!step.folder.empty()) j["folder"] = step.folder;
      if (step.item) j["item"] = ItemJson(*step.item);
      break;
    case StepKind::kChange:
      j["target"] = step.target;
      j["set"] = step.changes;
      break;
    case StepKind::kDelete:
    case StepKind::kOpenInspector:
    case StepKind::kCloseInspector:
      j["target"] = step.target;
      break;
    case StepKind::kWait:
      // A last wait until a moment reads back as that moment, then no further wait.
      if (step.until != 0) j["at"] = FormatIsoTime(step.until);
      j["for"] = step.until != 0 ? 0.0 : step.seconds;
      break;
    case StepKind::kSettings:
      if (!step.registry.values.empty() || !step.registry.reg_files.empty()) {
        j["registry"] = RegistryJson(step.registry);
      }
      if (step.multi_user) j["multi_user"] = *step.multi_user;
      break;
    case StepKind::kClick:
      j["button"] = step.button;
      if (!step.selection.empty()) j["selection"] = step.selection;
      if (step.in != "explorer") j["in"] = step.in;
      if (step.confirm) j["confirm"] = *step.confirm;
      if (!step.fill.empty()) j["fill"] = step.fill;
      if (!step.then.empty()) j["then"] = step.then;
      if (!step.link_items.empty()) j["link_items"] = step.link_items;
      if (step.button == "letter") j["letter"] = step.letter;
      break;
    case StepKind::kLoadAddin:
    case StepKind::kUnloadAddin:
    case StepKind::kQuit:
      break;
    // Host faults, answers, checks and window messages are written by hand in test
    // scenarios; the importer and the demo, whose scenarios this writes, make none.
    case StepKind::kFail:
    case StepKind::kHeal:
    case StepKind::kRemoveFolder:
    case StepKind::kAnswer:
    case StepKind::kCheck:
    case StepKind::kWindowMessage:
      throw InputError("", 0, "timeline",
                       std::string("a '") + StepName(step.kind) + "' step cannot be written back");
  }
  return j;
}

ordered_json ScenarioJson(const Scenario& s) {
  ordered_json j;
  j["name"] = s.name;
  if (!s.description.empty()) j["description"] = s.description;
  j["outlook"] = {{"version", s.outlook_version}};
  if (s.start_time != 0) j["start"] = FormatIsoTime(s.start_time);
  if (s.log_level != 3) j["log_level"] = s.log_level;
  if (s.first_run) j["first_run"] = true;
  j["profile"] = ProfileJson(s.profile);
  if (!s.foldersets.empty()) {
    j["foldersets"] = ordered_json::array();
    for (const FoldersetSpec& f : s.foldersets) {
      ordered_json fj;
      fj["contacts"] = f.contacts;
      for (const auto& [key, value] :
           {std::pair{"email", &f.email}, std::pair{"journal", &f.journal},
            std::pair{"shared_calendar", &f.shared_calendar},
            std::pair{"shared_journal", &f.shared_journal},
            std::pair{"shared_tasks", &f.shared_tasks}}) {
        if (!value->empty()) fj[key] = *value;
      }
      if (f.flags != 0) fj["flags"] = f.flags;
      j["foldersets"].push_back(fj);
    }
  }
  if (!s.monitored_folders.empty()) {
    j["monitored_folders"] = ordered_json::array();
    for (const MonitorSpec& m : s.monitored_folders) {
      j["monitored_folders"].push_back({{"folder", m.folder}, {"flags", m.flags}});
    }
  }
  if (!s.registry.values.empty() || !s.registry.reg_files.empty()) {
    j["registry"] = RegistryJson(s.registry);
  }
  if (!s.timeline.empty()) {
    j["timeline"] = ordered_json::array();
    const std::vector<StepSpec>& t = s.timeline;
    for (size_t i = 0; i < t.size(); ++i) {
      // A wait until a moment is the "at" of the step after it, as it was read.
      if (t[i].kind == StepKind::kWait && t[i].until != 0 && i + 1 < t.size()) {
        ordered_json step = StepJson(t[++i]);
        step["at"] = FormatIsoTime(t[i - 1].until);
        j["timeline"].push_back(step);
      } else {
        j["timeline"].push_back(StepJson(t[i]));
      }
    }
  }
  return j;
}

}  // namespace zintra::simtool
