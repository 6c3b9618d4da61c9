#include "tools/zintra-sim/host_expectations.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <string>

#include "src/core/text.h"
#include "src/resources/string_table.h"
#include "tools/zintra-sim/disk_files.h"

namespace zintra::simtool {

namespace {

bool Contains(const std::string& found, const std::string& expected) {
  return found.find(expected) != std::string::npos;
}

// The message's text: given as text, or as the number of one of the add-in's strings.
std::string MessageText(const JsonNode& n) {
  if (!n.Value().is_number()) return n.AsString();
  int64_t id = n.AsInt(1, 0x7FFFFFFF);
  if (!StringTable::Contains(static_cast<int32_t>(id))) n.Fail("no string has that number");
  std::string text = StringTable(Language::kEnglish).Load(static_cast<int32_t>(id));
  // A text with "|1" markers is filled in when shown: the part before the first is matched.
  return text.substr(0, text.find('|'));
}

void Choice(const JsonNode& n, const char* key, std::initializer_list<const char*> allowed,
            std::map<std::string, std::string>& fields) {
  auto v = n.Get(key);
  if (!v) return;
  std::string t = v->AsString();
  std::string list;
  for (const char* a : allowed) {
    if (t == a) {
      fields[key] = t;
      return;
    }
    list += std::string(list.empty() ? "" : ", ") + a;
  }
  v->Fail("expected " + list);
}

bool MessageMatches(const ShownMessage& m, const std::map<std::string, std::string>& fields) {
  for (const auto& [field, expected] : fields) {
    std::string found = MessageField(m, field);
    if (field == "text" ? !Contains(found, expected) : !text::EqualsNoCase(found, expected)) {
      return false;
    }
  }
  return true;
}

bool RowMatches(const hosts::ErrorLogRow& row, const std::map<std::string, std::string>& fields) {
  for (const auto& [column, expected] : fields) {
    std::string found = ErrorColumn(row, column);
    bool contained = column == "description" || column == "trail" || column == "other_versions";
    if (contained ? !Contains(found, expected) : !text::EqualsNoCase(found, expected)) {
      return false;
    }
  }
  return true;
}

std::string Describe(const std::map<std::string, std::string>& fields) {
  std::string s;
  for (const auto& [k, v] : fields) s += (s.empty() ? "" : ", ") + k + "='" + v + "'";
  return s;
}

std::string Expected(const ExpectSpec& e) {
  return !e.present ? std::string("none")
         : e.count  ? std::to_string(*e.count)
                    : std::string("at least 1");
}

}  // namespace

bool IsHostExpectation(const JsonNode& n) {
  return n.Has("message") || n.Has("messages") || n.Has("error_record") || n.Has("error_log") ||
         n.Has("log_order") || n.Has("file");
}

ExpectSpec ReadHostExpectation(const JsonNode& n) {
  ExpectSpec e;
  e.source_line = n.Line();
  int kinds = n.Has("message") + n.Has("messages") + n.Has("error_record") + n.Has("error_log") +
              n.Has("log_order") + n.Has("file");
  if (kinds != 1) {
    n.Fail("an expectation needs exactly one of \"message\", \"messages\", \"error_record\", "
           "\"error_log\", \"log_order\", \"file\"");
  }
  if (n.Has("file")) return ReadFileExpectation(n);
  auto& fields = e.host.fields;
  if (auto m = n.Get("message")) {
    n.OnlyKeys({"message", "kind", "title", "buttons", "icon", "answer", "ticked", "present",
                "count", "note"});
    e.kind = ExpectKind::kMessage;
    fields["text"] = MessageText(*m);
    Choice(n, "kind", {"box", "optional", "form"}, fields);
    if (auto t = n.Get("title")) fields["title"] = t->AsString();
    Choice(n, "buttons",
           {"ok", "ok-cancel", "abort-retry-ignore", "yes-no-cancel", "yes-no", "retry-cancel"},
           fields);
    Choice(n, "icon", {"critical", "question", "exclamation", "information", ""}, fields);
    Choice(n, "answer", {"ok", "cancel", "abort", "retry", "ignore", "yes", "no", "close"}, fields);
    if (auto t = n.Get("ticked")) fields["ticked"] = t->AsBool() ? "True" : "False";
  } else if (auto list = n.Get("messages")) {
    n.OnlyKeys({"messages", "note"});
    e.kind = ExpectKind::kMessages;
    for (const JsonNode& t : list->Elements()) e.host.texts.push_back(MessageText(t));
  } else if (auto r = n.Get("error_record")) {
    n.OnlyKeys({"error_record", "present", "count", "note"});
    e.kind = ExpectKind::kErrorRecord;
    const auto& names = ErrorColumnNames();
    for (const auto& [column, value] : r->Members()) {
      if (std::find(names.begin(), names.end(), column) == names.end()) {
        std::string known;
        for (const std::string& c : names) known += (known.empty() ? "" : ", ") + c;
        value.Fail("expected one of the error log's columns: " + known);
      }
      fields[column] = value.AsScalarText();
    }
    if (fields.empty()) r->Fail("name at least one column the row must have");
  } else if (auto order = n.Get("log_order")) {
    n.OnlyKeys({"log_order", "note"});
    e.kind = ExpectKind::kLogOrder;
    e.host.texts = order->AsStrings();
    if (e.host.texts.size() < 2) order->Fail("expected two or more texts, in the order written");
  } else {
    n.OnlyKeys({"error_log", "note"});
    e.kind = ExpectKind::kErrorLog;
    fields["path"] = n.Need("error_log").AsString();
  }
  if (e.kind == ExpectKind::kMessage || e.kind == ExpectKind::kErrorRecord) {
    e.present = n.Bool("present", true);
    if (auto c = n.Get("count")) {
      if (!e.present) c->Fail("\"count\" with \"present\": false; give one of them");
      e.count = static_cast<int>(c->AsInt(0, 1 << 30));
    }
  }
  return e;
}

ExpectationOutcome CheckHostExpectation(const ExpectSpec& e, const RunResult& result) {
  const HostRecord& r = result.host;
  ExpectationOutcome o{e, false, ""};
  const auto& fields = e.host.fields;
  switch (e.kind) {
    case ExpectKind::kMessage: {
      int n = 0;
      for (const ShownMessage& m : r.messages) n += MessageMatches(m, fields);
      o.met = !e.present ? n == 0 : e.count ? n == *e.count : n > 0;
      o.detail = "message with " + Describe(fields) + " shown " + std::to_string(n) +
                 " time(s), expected " + Expected(e);
      break;
    }
    case ExpectKind::kMessages: {
      std::string shown;
      for (const ShownMessage& m : r.messages) shown += "\n    " + m.kind + ": " + m.text;
      o.met = r.messages.size() == e.host.texts.size();
      for (size_t i = 0; o.met && i < e.host.texts.size(); ++i) {
        o.met = Contains(r.messages[i].text, e.host.texts[i]);
      }
      o.detail = std::to_string(r.messages.size()) + " message(s) shown, expected " +
                 std::to_string(e.host.texts.size()) + " in the order given" +
                 (o.met ? std::string() : ":" + shown);
      break;
    }
    case ExpectKind::kErrorRecord: {
      int n = 0;
      for (const hosts::ErrorLogRow& row : r.errors) n += RowMatches(row, fields);
      o.met = !e.present ? n == 0 : e.count ? n == *e.count : n > 0;
      o.detail = "error-log row with " + Describe(fields) + " found " + std::to_string(n) +
                 " time(s), expected " + Expected(e);
      break;
    }
    case ExpectKind::kErrorLog: {
      const std::string& want = fields.at("path");
      std::string found = r.error_log_paths.empty() ? "" : r.error_log_paths.back();
      o.met = text::EqualsNoCase(found, want);
      o.detail = "the error log is '" + found + "', expected '" + want + "'";
      break;
    }
    case ExpectKind::kFile: {
      auto it = r.files.find(fields.at("path"));
      auto [met, detail] = CheckFile(e, it == r.files.end() ? std::nullopt : it->second);
      o.met = met;
      o.detail = detail;
      break;
    }
    case ExpectKind::kLogOrder: {
      // Each text is looked for after the line the one before it was found on.
      size_t next = 0, found = 0;
      for (const std::string& want : e.host.texts) {
        while (next < result.log_lines.size() && !Contains(result.log_lines[next], want)) ++next;
        if (next == result.log_lines.size()) break;
        ++next;
        ++found;
      }
      o.met = found == e.host.texts.size();
      o.detail = o.met ? "the log lines follow in the order given"
                       : "no log line containing '" + e.host.texts[found] + "' after '" +
                             (found ? e.host.texts[found - 1] : std::string("the start")) + "'";
      break;
    }
    default:
      break;
  }
  return o;
}

}  // namespace zintra::simtool
