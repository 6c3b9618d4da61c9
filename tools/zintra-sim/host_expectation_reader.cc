// Reading the host expectations, apart from checking them, so that the scenario reader
// needs nothing of a run.
#include "tools/zintra-sim/host_expectations.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <string>

#include "src/core/text.h"
#include "src/resources/string_table.h"
#include "tools/zintra-sim/disk_files.h"
#include "tools/zintra-sim/host_record.h"

namespace zintra::simtool {
namespace {

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

}  // namespace

// The error log's columns, as expectations name them (the readers check names against
// them; the run reads them off each row).
const std::vector<std::string>& ErrorColumnNames() {
  static const std::vector<std::string> kNames = {"kind",
                                                  "number",
                                                  "source",
                                                  "description",
                                                  "module",
                                                  "procedure",
                                                  "line",
                                                  "trail",
                                                  "app_id",
                                                  "last_dll_error",
                                                  "addin_version",
                                                  "controls_version",
                                                  "outlook_version",
                                                  "outlook_product",
                                                  "library_version",
                                                  "other_versions"};
  return kNames;
}

bool IsHostExpectation(const JsonNode& n) {
  return n.Has("message") || n.Has("dialog") || n.Has("messages") || n.Has("error_record") ||
         n.Has("error_log") || n.Has("log_order") || n.Has("file");
}

ExpectSpec ReadHostExpectation(const JsonNode& n) {
  ExpectSpec e;
  e.source_line = n.Line();
  // A message is named by its text, by its dialog number, or by both.
  const bool message = n.Has("message") || n.Has("dialog");
  int kinds = message + n.Has("messages") + n.Has("error_record") + n.Has("error_log") +
              n.Has("log_order") + n.Has("file");
  if (kinds != 1) {
    n.Fail(
        "an expectation needs exactly one of \"message\" (or \"dialog\"), \"messages\", "
        "\"error_record\", \"error_log\", \"log_order\", \"file\"");
  }
  if (n.Has("file")) return ReadFileExpectation(n);
  auto& fields = e.host.fields;
  if (message) {
    n.OnlyKeys({"message", "dialog", "kind", "title", "buttons", "icon", "answer", "ticked",
                "present", "count", "note"});
    e.kind = ExpectKind::kMessage;
    if (auto m = n.Get("message")) fields["text"] = MessageText(*m);
    if (auto d = n.Get("dialog")) {
      // Only optional messages carry a dialog number.
      if (auto k = n.Get("kind"); k && k->AsString() != "optional") {
        k->Fail("only an optional message has a dialog number");
      }
      fields["dialog"] = std::to_string(d->AsInt(1, 0x7FFFFFFF));
      fields["kind"] = "optional";
    }
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
    // Each showing is its text, or {"message": text, "dialog": n} with either or both.
    for (const JsonNode& t : list->Elements()) {
      if (!t.IsObject()) {
        e.host.texts.push_back(MessageText(t));
        e.host.dialogs.push_back(0);
        continue;
      }
      t.OnlyKeys({"message", "dialog"});
      if (!t.Has("message") && !t.Has("dialog")) t.Fail("expected \"message\", \"dialog\" or both");
      auto m = t.Get("message");
      e.host.texts.push_back(m ? MessageText(*m) : std::string());
      auto d = t.Get("dialog");
      e.host.dialogs.push_back(d ? static_cast<int32_t>(d->AsInt(1, 0x7FFFFFFF)) : 0);
    }
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

}  // namespace zintra::simtool
