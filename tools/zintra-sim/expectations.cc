#include "tools/zintra-sim/expectations.h"

#include "src/core/text.h"
#include "tools/zintra-sim/item_view.h"

namespace zintra::simtool {

namespace {

// "" when every field matches, else the first difference.
std::string Mismatch(const sim::MessageRecord& m, const std::map<std::string, std::string>& match) {
  for (const auto& [field, expected] : match) {
    std::string found = FieldText(m, field);
    if (!text::EqualsNoCase(found, expected)) {
      return field + " is '" + found + "', expected '" + expected + "'";
    }
  }
  return "";
}

std::string MatchText(const std::map<std::string, std::string>& match) {
  std::string s;
  for (const auto& [k, v] : match) s += (s.empty() ? "" : ", ") + k + "='" + v + "'";
  return s.empty() ? "" : " with " + s;
}

ExpectationOutcome Check(const ExpectSpec& e, const ProfileLoader& loader, const RunResult& r) {
  ExpectationOutcome o{e, false, ""};
  switch (e.kind) {
    case ExpectKind::kFolder: {
      auto folder = loader.FindFolder(e.folder);
      if (!folder) {
        o.detail = "the profile has no folder '" + e.folder + "'";
        break;
      }
      int n = 0;
      std::string last;
      for (const auto& m : folder->messages) {
        if (m->deleted) continue;
        std::string diff = Mismatch(*m, e.match);
        n += diff.empty();
        if (!diff.empty()) last = diff;
      }
      o.met = e.count ? n == *e.count : n > 0;
      o.detail = "folder '" + e.folder + "' holds " + std::to_string(n) + " item(s)" +
                 MatchText(e.match) + ", expected " +
                 (e.count ? std::to_string(*e.count) : std::string("at least 1")) +
                 (o.met || last.empty() ? "" : " (e.g. " + last + ")");
      break;
    }
    case ExpectKind::kItem: {
      auto m = loader.FindItem(e.target);
      if (!m) {
        o.detail = "item '" + e.target + "' is no longer in the profile";
        break;
      }
      std::string diff = Mismatch(*m, e.match);
      o.met = diff.empty();
      o.detail = "item '" + e.target + "': " + (o.met ? "matches" + MatchText(e.match) : diff);
      break;
    }
    case ExpectKind::kLog: {
      int n = 0;
      for (const std::string& line : r.log_lines) n += line.find(e.log_text) != std::string::npos;
      if (!e.present) {
        o.met = n == 0;
      } else {
        o.met = e.count ? n == *e.count : n > 0;
      }
      o.detail = "log line '" + e.log_text + "' found " + std::to_string(n) +
                 " time(s), expected " +
                 (!e.present ? std::string("none")
                  : e.count  ? std::to_string(*e.count)
                             : std::string("at least once"));
      break;
    }
    case ExpectKind::kCount: {
      int n = 0;
      if (e.what == "errors" || e.what == "log_lines") {
        for (const std::string& line : r.log_lines) n += e.what == "log_lines" || line[0] == 'E';
      } else {
        std::string outcome = e.what == "copies" ? "copy" : e.what;
        for (const WhyRow& row : r.why) n += row.outcome == outcome;
      }
      o.met = n == e.count.value_or(0);
      o.detail = "total " + e.what + " is " + std::to_string(n) + ", expected " +
                 std::to_string(e.count.value_or(0));
      break;
    }
  }
  return o;
}

}  // namespace

std::vector<ExpectationOutcome> CheckExpectations(const std::vector<ExpectSpec>& descs,
                                                  const sim::Profile& /*profile*/,
                                                  const ProfileLoader& loader,
                                                  const RunResult& result) {
  std::vector<ExpectationOutcome> out;
  for (const ExpectSpec& e : descs) out.push_back(Check(e, loader, result));
  return out;
}

std::string DescribeOutcome(const ExpectationOutcome& o) {
  return (o.desc.source_line > 0 ? "line " + std::to_string(o.desc.source_line) + ": " : "") +
         o.detail;
}

}  // namespace zintra::simtool
