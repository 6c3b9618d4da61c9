#include "tools/zintra-sim/scenario_writer.h"

#include "src/host/msg_box.h"
#include "tools/zintra-sim/item_marks.h"

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

ordered_json MarksJson(const PresetMarks& m) {
  ordered_json j = ordered_json::object();
  if (m.last_audited) j["Zintra Last Audited"] = FormatIsoTime(*m.last_audited);
  if (!m.logged_copies.empty()) j["logged_copies"] = m.logged_copies;
  if (!m.shared_copies.empty()) j["shared_copies"] = m.shared_copies;
  if (!m.store_ids) j["store_ids"] = false;
  if (m.journal_type) j["journal_type"] = *m.journal_type;
  if (m.owner) j["owner"] = *m.owner;
  if (m.ownership) j["ownership"] = kOwnership[*m.ownership];
  return j;
}

const char* MsgBoxAnswerName(int32_t answer) {
  switch (answer) {
    case kMsgBoxResultOK:
      return "ok";
    case kMsgBoxResultCancel:
      return "cancel";
    case kMsgBoxResultAbort:
      return "abort";
    case kMsgBoxResultRetry:
      return "retry";
    case kMsgBoxResultIgnore:
      return "ignore";
    case kMsgBoxResultYes:
      return "yes";
    default:
      return "no";
  }
}

// The fields of an expectation on what the user was shown or on the error log.
void HostExpectJson(const ExpectSpec& e, ordered_json& j) {
  const auto& f = e.host.fields;
  switch (e.kind) {
    case ExpectKind::kMessage:
      if (f.count("text")) j["message"] = f.at("text");
      for (const auto& [key, value] : f) {
        if (key == "ticked") {
          j[key] = value == "True";
        } else if (key == "dialog") {
          j[key] = std::stoi(value);
        } else if (key != "text") {
          j[key] = value;
        }
      }
      break;
    case ExpectKind::kMessages:
      j["messages"] = ordered_json::array();
      for (size_t i = 0; i < e.host.texts.size(); ++i) {
        const int32_t dialog = i < e.host.dialogs.size() ? e.host.dialogs[i] : 0;
        if (dialog == 0) {
          j["messages"].push_back(e.host.texts[i]);
          continue;
        }
        ordered_json m;
        if (!e.host.texts[i].empty()) m["message"] = e.host.texts[i];
        m["dialog"] = dialog;
        j["messages"].push_back(m);
      }
      return;
    case ExpectKind::kErrorRecord:
      j["error_record"] = f;
      break;
    case ExpectKind::kErrorLog:
      j["error_log"] = f.at("path");
      return;
    case ExpectKind::kLogOrder:
      j["log_order"] = e.host.texts;
      return;
    case ExpectKind::kFile:
      j["file"] = f.at("path");
      if (f.count("content")) j["content"] = f.at("content");
      if (f.count("contains")) j["contains"] = f.at("contains");
      if (f.count("exists")) j["exists"] = f.at("exists") == "True";
      if (f.count("contains") && !e.present) j["present"] = false;
      return;
    default:
      return;
  }
  if (!e.present) j["present"] = false;
  if (e.count) j["count"] = *e.count;
}

}  // namespace

ordered_json ExpectJson(const ExpectSpec& e) {
  ordered_json j;
  switch (e.kind) {
    case ExpectKind::kFolder:
      j["folder"] = e.folder;
      if (!e.match.empty()) j["match"] = e.match;
      if (e.count) j["count"] = *e.count;
      break;
    case ExpectKind::kItem:
      j["item"] = e.target;
      j["match"] = e.match;
      if (e.count) j["count"] = *e.count;
      break;
    case ExpectKind::kLog:
      j["log"] = e.log_text;
      if (!e.present) j["present"] = false;
      if (e.count) j["count"] = *e.count;
      break;
    case ExpectKind::kCount:
      j["total"] = e.what;
      j["equals"] = e.count.value_or(0);
      break;
    case ExpectKind::kRegistry:
      j["registry"] = e.reg_key;
      j["name"] = e.reg_name;
      j["value"] = e.reg_value;
      break;
    default:
      HostExpectJson(e, j);
      break;
  }
  return j;
}

ordered_json FilesJson(const std::vector<FileSpec>& files) {
  ordered_json a = ordered_json::array();
  for (const FileSpec& f : files) {
    ordered_json j;
    if (f.folder) {
      j["folder"] = f.path;
    } else {
      j["path"] = f.path;
      j["text"] = f.text;
      if (f.read_only) j["read_only"] = true;
      if (f.unopenable) j["unopenable"] = true;
    }
    a.push_back(j);
  }
  return a;
}

ordered_json ItemJson(const ItemSpec& item) {
  ordered_json j;
  if (!item.id.empty()) j["id"] = item.id;
  // An item given without a class takes its folder's kind, mail being the default.
  if (item.class_given || item.item_class != ItemClass::kMail) {
    j["class"] = ItemClassName(item.item_class);
  }
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
      if (a.link) {
        aj["link"] = true;
      } else {
        aj["size"] = a.size;
      }
      j["attachments"].push_back(aj);
    }
  }
  if (!item.properties.empty()) j["properties"] = item.properties;
  if (item.marks) j["marks"] = MarksJson(*item.marks);
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
      j["target"] = step.target;
      if (step.hard) j["hard"] = true;
      break;
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
      if (step.reset_messages) j["reset_messages"] = true;
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
    case StepKind::kHeal:
      break;
    case StepKind::kFail: {
      const FaultSpec& f = step.fault;
      j["member"] = f.member;
      j["error"] = f.error;
      if (!f.text.empty()) j["text"] = f.text;
      if (f.mode != "always") j[f.mode] = f.n;
      if (!f.target.empty()) j["target"] = f.target;
      if (!f.folder.empty()) j["folder"] = f.folder;
      break;
    }
    case StepKind::kRemoveFolder:
      j["folder"] = step.fault.folder;
      break;
    case StepKind::kAnswer:
      if (!step.answers.message_box.empty()) {
        j["message_box"] = ordered_json::array();
        for (int32_t a : step.answers.message_box) j["message_box"].push_back(MsgBoxAnswerName(a));
      }
      if (!step.answers.optional.empty()) j["optional"] = step.answers.optional;
      break;
    case StepKind::kCheck:
      j["expect"] = ordered_json::array();
      for (const ExpectSpec& e : step.checks) j["expect"].push_back(ExpectJson(e));
      break;
    case StepKind::kWindowMessage:
      j["target"] = step.target;
      j["message"] = step.message;
      if (step.wparam != 0) j["wparam"] = step.wparam;
      break;
  }
  if (step.during) {
    j["during"] = "job";
    if (!step.during_job.empty()) j["job"] = step.during_job;
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
  if (!s.files.empty()) j["files"] = FilesJson(s.files);
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
  if (!s.expect.empty()) {
    j["expect"] = ordered_json::array();
    for (const ExpectSpec& e : s.expect) j["expect"].push_back(ExpectJson(e));
  }
  return j;
}

}  // namespace zintra::simtool
