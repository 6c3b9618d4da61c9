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
      for (const ShownMessage& m : r.messages) {
        shown += "\n    " + m.kind +
                 (m.kind == "optional" ? " (dialog " + std::to_string(m.dialog) + ")" : "") + ": " +
                 m.text;
      }
      o.met = r.messages.size() == e.host.texts.size();
      for (size_t i = 0; o.met && i < e.host.texts.size(); ++i) {
        const int32_t dialog = i < e.host.dialogs.size() ? e.host.dialogs[i] : 0;
        o.met =
            Contains(r.messages[i].text, e.host.texts[i]) &&
            (dialog == 0 || (r.messages[i].kind == "optional" && r.messages[i].dialog == dialog));
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
