#include "tools/zintra-sim/expectations.h"

#include "src/core/text.h"
#include "tools/zintra-sim/host_expectations.h"
#include "tools/zintra-sim/item_marks.h"
#include "tools/zintra-sim/item_view.h"

namespace zintra::simtool {

namespace {

// "" when every field matches, else the first difference.
std::string Mismatch(const sim::MessageRecord& m, const std::map<std::string, std::string>& match,
                     const ProfileLoader& loader) {
  for (const auto& [field, expected] : match) {
    std::string found = MarkText(m, field, loader).value_or(FieldText(m, field));
    bool met = expected == "*" ? !found.empty() : text::EqualsNoCase(found, expected);
    if (!met) {
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

ExpectationOutcome Check(const ExpectSpec& e, const sim::MemoryRegistry& registry,
                         const ProfileLoader& loader, const RunResult& r) {
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
        std::string diff = Mismatch(*m, e.match, loader);
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
      std::string diff = Mismatch(*m, e.match, loader);
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
    case ExpectKind::kRegistry: {
      std::optional<std::string> found = RegistryText(registry, e.reg_key, e.reg_name);
      o.met = e.reg_value.empty() ? !found : found && text::EqualsNoCase(*found, e.reg_value);
      o.detail = "registry " + e.reg_key + " \"" + e.reg_name + "\" is " +
                 (found ? "'" + *found + "'" : std::string("absent")) + ", expected " +
                 (e.reg_value.empty() ? std::string("absent") : "'" + e.reg_value + "'");
      break;
    }
    default:
      return CheckHostExpectation(e, r);
  }
  return o;
}

}  // namespace

std::pair<HKey, std::string> SplitRegKey(const std::string& key) {
  size_t slash = key.find('\\');
  std::string hive = text::UCase(key.substr(0, slash));
  std::string path = slash == std::string::npos ? "" : key.substr(slash + 1);
  HKey h = (hive == "HKLM" || hive == "HKEY_LOCAL_MACHINE") ? kHKeyLocalMachine : kHKeyCurrentUser;
  return {h, path};
}

std::optional<std::string> RegistryText(const sim::MemoryRegistry& registry, const std::string& key,
                                        const std::string& name) {
  auto [hive, path] = SplitRegKey(key);
  std::optional<sim::RegistryValue> v = registry.GetValue(hive, path, name);
  if (!v) return std::nullopt;
  if (auto d = v->AsDword()) return std::to_string(*d);
  if (v->type != kRegMultiSz) return v->AsString();
  std::string joined, one;
  for (uint8_t c : v->data) {
    if (c != 0) {
      one += static_cast<char>(c);
    } else if (!one.empty()) {
      joined += (joined.empty() ? "" : "; ") + one;
      one.clear();
    }
  }
  return joined;
}

std::vector<ExpectationOutcome> CheckExpectations(const std::vector<ExpectSpec>& descs,
                                                  const sim::MemoryRegistry& registry,
                                                  const ProfileLoader& loader,
                                                  const RunResult& result) {
  std::vector<ExpectationOutcome> out;
  for (const ExpectSpec& e : descs) out.push_back(Check(e, registry, loader, result));
  return out;
}

std::string DescribeOutcome(const ExpectationOutcome& o) {
  return (o.desc.source_line > 0 ? "line " + std::to_string(o.desc.source_line) + ": " : "") +
         o.detail;
}

}  // namespace zintra::simtool
