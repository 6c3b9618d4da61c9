#include "tools/zintra-sim/host_record.h"

#include <algorithm>

#include "sim/addin_host/sim_outlook.h"

namespace zintra::simtool {

namespace {

const char* ButtonsName(int32_t flags) {
  static constexpr const char* kSets[] = {
      "ok", "ok-cancel", "abort-retry-ignore", "yes-no-cancel", "yes-no", "retry-cancel"};
  int32_t set = flags & 0xF;
  return set <= 5 ? kSets[set] : "ok";
}

const char* IconName(int32_t flags) {
  switch (flags & 0x70) {
    case kMsgBoxCritical:
      return "critical";
    case kMsgBoxQuestion:
      return "question";
    case kMsgBoxExclamation:
      return "exclamation";
    case kMsgBoxInformation:
      return "information";
    default:
      return "";
  }
}

const char* AnswerName(int32_t answer) {
  static constexpr const char* kNames[] = {"",      "ok",     "cancel", "abort",
                                           "retry", "ignore", "yes",    "no"};
  return answer >= 1 && answer <= 7 ? kNames[answer] : "";
}

}  // namespace

HostRecord RecordHost(const sim::SimOutlook& o) {
  HostRecord r;
  for (const sim::ShownMsgBox& b : o.msg_box.Shown()) {
    r.messages.push_back({"box", b.prompt, b.title, ButtonsName(b.buttons), IconName(b.buttons),
                          AnswerName(b.answer), false, b.order});
  }
  for (const sim::ShownOptionalMsgBox& b : o.dialogs.OptionalShown()) {
    r.messages.push_back({"optional", b.content.lblMsg, b.content.caption, "ok", "",
                          b.hidden_by_ok ? "ok" : "close", b.final_chkDontShow == 1, b.order,
                          b.content.dialog});
  }
  for (const sim::ShownMessageForm& f : o.dialogs.MessagesShown()) {
    r.messages.push_back(
        {"form", f.layout.lblMessage, f.layout.caption, "ok", "", "ok", false, f.order});
  }
  std::stable_sort(r.messages.begin(), r.messages.end(),
                   [](const ShownMessage& a, const ShownMessage& b) { return a.order < b.order; });
  for (const auto& log : o.error_logs.Created()) {
    for (const hosts::ErrorLogRow& row : log->Rows()) r.errors.push_back(row);
    r.error_log_paths.push_back(log->Path());
  }
  return r;
}

std::string MessageField(const ShownMessage& m, const std::string& field) {
  if (field == "text") return m.text;
  if (field == "kind") return m.kind;
  if (field == "title") return m.title;
  if (field == "buttons") return m.buttons;
  if (field == "icon") return m.icon;
  if (field == "answer") return m.answer;
  if (field == "ticked") return m.ticked ? "True" : "False";
  if (field == "dialog") return m.kind == "optional" ? std::to_string(m.dialog) : "";
  return "";
}

std::string ErrorColumn(const hosts::ErrorLogRow& row, const std::string& c) {
  if (c == "kind") return row.kind;
  if (c == "number") return std::to_string(row.error_number);
  if (c == "source") return row.source;
  if (c == "description") return row.description;
  if (c == "module") return row.module;
  if (c == "procedure") return row.procedure;
  if (c == "line") return row.line;
  if (c == "trail") return row.trail;
  if (c == "app_id") return row.app_id;
  if (c == "last_dll_error") return row.last_dll_error;
  if (c == "addin_version") return row.versions.addin;
  if (c == "controls_version") return row.versions.controls;
  if (c == "outlook_version") return row.versions.outlook;
  if (c == "outlook_product") return row.versions.outlook_product;
  if (c == "library_version") return row.versions.library;
  if (c == "other_versions") return row.versions.others;
  return "";
}

nlohmann::ordered_json MessagesJson(const HostRecord& record) {
  nlohmann::ordered_json out = nlohmann::ordered_json::array();
  for (const ShownMessage& m : record.messages) {
    nlohmann::ordered_json j;
    for (const char* f : {"kind", "text", "title", "buttons", "icon", "answer"}) {
      if (!MessageField(m, f).empty()) j[f] = MessageField(m, f);
    }
    if (m.kind == "optional") {
      j["dialog"] = m.dialog;
      j["ticked"] = m.ticked;
    }
    out.push_back(j);
  }
  return out;
}

nlohmann::ordered_json ErrorsJson(const HostRecord& record) {
  nlohmann::ordered_json j;
  j["logs"] = record.error_log_paths;
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (const hosts::ErrorLogRow& row : record.errors) {
    nlohmann::ordered_json r;
    r["at"] = row.logged_at;
    for (const std::string& c : ErrorColumnNames()) {
      if (c == "number") {
        r[c] = row.error_number;
      } else {
        r[c] = ErrorColumn(row, c);
      }
    }
    rows.push_back(r);
  }
  j["rows"] = rows;
  return j;
}

}  // namespace zintra::simtool
