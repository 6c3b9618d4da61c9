#include "tools/zintra-sim/scenario_reader.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "src/core/text.h"
#include "tools/zintra-sim/disk_files.h"
#include "tools/zintra-sim/host_expectations.h"
#include "tools/zintra-sim/host_steps.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/json_source.h"
#include "tools/zintra-sim/scenario_fields.h"
#include "tools/zintra-sim/timeline_check.h"

namespace zintra::simtool {

namespace {

// A sensitivity typed into an item must be one Outlook has.
void CheckSensitivity(const JsonNode& n, const std::map<std::string, std::string>& fields) {
  for (const auto& [field, value] : fields) {
    if (text::EqualsNoCase(field, "sensitivity") && !SensitivityFromName(value)) {
      n.Need(field).Fail("expected normal, personal, private or confidential");
    }
  }
}

ExpectSpec ReadExpect(const JsonNode& n);

// A click and the answers to what its button shows; an answer the button never asks
// for is a mistake in the file, not something to ignore.
void ReadClick(const JsonNode& n, StepSpec& step) {
  JsonNode button = n.Need("button");
  step.button = button.AsString();
  if (!ButtonTag(step.button)) {
    button.Fail("expected phone-call, email, file-link, note, appointment or letter");
  }
  if (auto s = n.Get("selection")) step.selection = s->AsStrings();
  step.in = n.String("in", "explorer");
  if (step.in != "explorer" && step.in != "inspector") {
    n.Need("in").Fail("expected explorer or inspector");
  }
  if (step.in == "inspector" && step.selection.size() != 1) {
    n.Fail("a click in an item window needs exactly one item in \"selection\"");
  }
  const std::string& b = step.button;
  const bool journal = b == "phone-call" || b == "note";
  const bool window = journal || b == "email" || b == "appointment";
  auto refuse = [&](const char* key, const char* why) {
    if (auto v = n.Get(key)) v->Fail(std::string("the ") + b + " button " + why);
  };
  if (auto c = n.Get("confirm")) {
    if (!journal) c->Fail("only phone-call and note ask before linking many items");
    step.confirm = c->AsBool();
  }
  if (auto f = n.Get("fill")) {
    if (!window) f->Fail("the " + b + " button opens no item window to fill");
    step.fill = ReadTextMap(*f);
    CheckSensitivity(*f, step.fill);
  }
  if (auto t = n.Get("then")) {
    step.then = t->AsString();
    if (b == "letter") {
      if (step.then != "file" && step.then != "discard") t->Fail("expected file or discard");
    } else if (!window) {
      t->Fail("the " + b + " button opens no window to leave");
    } else if (step.then != "save" && step.then != "discard" && step.then != "keep-open" &&
               !(b == "email" && step.then == "send")) {
      t->Fail(b == "email" ? "expected send, save, discard or keep-open"
                           : "expected save, discard or keep-open");
    }
  }
  if (b == "file-link") {
    if (auto l = n.Get("link_items")) step.link_items = l->AsStrings();
  } else {
    refuse("link_items", "shows no link dialog (only file-link does)");
  }
  if (b == "letter") {
    step.letter = n.String("letter");
  } else {
    refuse("letter", "writes no letter (only letter does)");
  }
}

StepSpec ReadStep(const JsonNode& n, const std::string& base_dir) {
  StepSpec step;
  step.source_line = n.Line();
  step.pointer = n.Pointer();
  JsonNode what = n.Need("do");
  auto kind = StepFromName(what.AsString());
  if (!kind) {
    what.Fail(
        "expected one of: start, deliver, send, add, change, delete, wait, settings, "
        "click, open-inspector, close-inspector, load-addin, unload-addin, quit, fail, heal, "
        "remove-folder, answer, check, window-message");
  }
  step.kind = *kind;
  if (IsHostStep(step.kind)) {
    ReadHostStep(n, step);
    return step;
  }
  if (step.kind == StepKind::kCheck) {
    n.OnlyKeys({"do", "at", "note", "expect"});
    JsonNode checks = n.Need("expect");
    for (const JsonNode& x : checks.Elements()) step.checks.push_back(ReadExpect(x));
    if (step.checks.empty()) checks.Fail("expected one or more expectations");
    return step;
  }
  n.OnlyKeys({"do",         "at",      "windows", "addin",          "folder",     "item",
              "target",     "set",     "for",     "registry",       "button",     "selection",
              "in",         "confirm", "fill",    "then",           "link_items", "letter",
              "multi_user", "note",    "hard",    "reset_messages", "during",     "job"});
  if (auto d = n.Get("during")) {
    if (d->AsString() != "job") d->Fail("expected \"job\": the step plays while a job is active");
    if (step.kind == StepKind::kWait || step.kind == StepKind::kStart) {
      d->Fail("a wait or a start cannot happen inside a job");
    }
    step.during = true;
    step.during_job = n.String("job");
  } else if (auto j = n.Get("job")) {
    j->Fail("\"job\" names the job of a step played \"during\": \"job\"");
  }
  auto need = [&](const char* key) { return n.Need(key); };
  switch (step.kind) {
    case StepKind::kStart:
      step.windows = n.String("windows", "explorer");
      if (step.windows != "explorer" && step.windows != "inspector" && step.windows != "none") {
        need("windows").Fail("expected explorer, inspector or none");
      }
      step.addin = n.Bool("addin", true);
      if (step.windows == "inspector") step.target = n.String("target");
      break;
    case StepKind::kDeliver:
    case StepKind::kSend:
    case StepKind::kAdd:
      step.item = ReadItem(need("item"), ItemClass::kMail, false);
      step.folder = n.String("folder");
      if (step.kind == StepKind::kAdd && step.folder.empty()) {
        n.Fail("\"add\" needs the \"folder\" the item is saved in");
      }
      break;
    case StepKind::kChange:
      step.target = need("target").AsString();
      step.changes = ReadTextMap(need("set"));
      CheckSensitivity(need("set"), step.changes);
      break;
    case StepKind::kDelete:
      step.target = need("target").AsString();
      step.hard = n.Bool("hard", false);
      break;
    case StepKind::kOpenInspector:
    case StepKind::kCloseInspector:
      step.target = need("target").AsString();
      break;
    case StepKind::kWait: {
      JsonNode f = need("for");
      std::optional<double> d = f.Value().is_number()
                                    ? std::optional<double>(f.Value().get<double>())
                                    : ParseDuration(f.AsString());
      if (!d || !std::isfinite(*d) || *d < 0)
        f.Fail("expected a duration: seconds, or \"90s\", \"10m\", \"2h\", \"1d\"");
      step.seconds = *d;
      break;
    }
    case StepKind::kSettings:
      if (n.Has("registry")) step.registry = ReadRegistry(need("registry"), base_dir);
      if (auto m = n.Get("multi_user")) step.multi_user = m->AsBool();
      step.reset_messages = n.Bool("reset_messages", false);
      if (!n.Has("registry") && !step.multi_user && !step.reset_messages) {
        n.Fail("\"settings\" needs \"registry\" values, \"multi_user\" or \"reset_messages\"");
      }
      break;
    case StepKind::kClick:
      ReadClick(n, step);
      break;
    default:
      break;
  }
  return step;
}

ExpectSpec ReadExpect(const JsonNode& n) {
  if (IsHostExpectation(n)) return ReadHostExpectation(n);
  n.OnlyKeys({"folder", "item", "match", "count", "log", "present", "total", "equals", "registry",
              "name", "value", "note"});
  ExpectSpec e;
  e.source_line = n.Line();
  int kinds = n.Has("folder") + n.Has("item") + n.Has("log") + n.Has("total") + n.Has("registry");
  if (kinds != 1) {
    n.Fail(
        "an expectation needs exactly one of \"folder\", \"item\", \"log\", \"total\", "
        "\"registry\"");
  }
  if (auto c = n.Get("count")) e.count = static_cast<int>(c->AsInt(0, 1 << 30));
  if (auto m = n.Get("match")) e.match = ReadTextMap(*m);
  if (n.Has("folder")) {
    e.kind = ExpectKind::kFolder;
    e.folder = n.Need("folder").AsString();
  } else if (n.Has("item")) {
    e.kind = ExpectKind::kItem;
    e.target = n.Need("item").AsString();
    if (e.match.empty()) n.Fail("an item expectation needs \"match\"");
  } else if (n.Has("log")) {
    e.kind = ExpectKind::kLog;
    e.log_text = n.Need("log").AsString();
    e.present = n.Bool("present", true);
  } else if (n.Has("registry")) {
    e.kind = ExpectKind::kRegistry;
    e.reg_key = n.Need("registry").AsString();
    std::string hive = e.reg_key.substr(0, e.reg_key.find('\\'));
    for (const char* h : {"HKCU", "HKLM", "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE"}) {
      if (text::EqualsNoCase(hive, h)) hive.clear();
    }
    if (!hive.empty() || e.reg_key.find('\\') == std::string::npos) {
      n.Need("registry").Fail("expected a key under HKCU\\ or HKLM\\");
    }
    e.reg_name = n.Need("name").AsString();
    e.reg_value = n.Need("value").AsScalarText();
  } else {
    e.kind = ExpectKind::kCount;
    e.what = n.Need("total").AsString();
    if (e.what != "logged" && e.what != "screened" && e.what != "copies" && e.what != "errors" &&
        e.what != "log_lines") {
      n.Need("total").Fail("expected logged, screened, copies, errors or log_lines");
    }
    e.count = static_cast<int>(n.Need("equals").AsInt(0, 1 << 30));
  }
  return e;
}

void CollectIds(const FolderSpec& f, std::set<std::string>& ids, const JsonSource& src) {
  for (const ItemSpec& item : f.items) {
    if (!item.id.empty() && !ids.insert(item.id).second) {
      throw InputError(src.File(), item.source_line, "id",
                       "the item id \"" + Excerpt(item.id) + "\" is used twice");
    }
  }
  for (const FolderSpec& sub : f.folders) CollectIds(sub, ids, src);
}

void CheckLinks(const FolderSpec& f, const std::set<std::string>& ids, const JsonSource& src) {
  for (const ItemSpec& item : f.items) {
    for (const std::string& link : item.links) {
      if (!ids.count(link)) {
        throw InputError(src.File(), item.source_line, "links",
                         "no item has the id \"" + Excerpt(link) + "\"");
      }
    }
    if (item.marks) {
      for (const auto* list : {&item.marks->logged_copies, &item.marks->shared_copies}) {
        for (const std::string& copy : *list) {
          if (!ids.count(copy)) {
            throw InputError(src.File(), item.source_line, "marks",
                             "no item has the id \"" + copy + "\"");
          }
        }
      }
    }
  }
  for (const FolderSpec& sub : f.folders) CheckLinks(sub, ids, src);
}

}  // namespace

std::string ReadWholeFile(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw InputError(file, 0, "", "cannot open the file");
  std::ostringstream s;
  s << in.rdbuf();
  if (in.bad()) throw InputError(file, 0, "", "cannot read the file");
  return s.str();
}

Scenario ReadScenarioFile(const std::string& file) {
  std::string dir = std::filesystem::path(file).parent_path().string();
  return ReadScenarioText(ReadWholeFile(file), file, dir.empty() ? "." : dir);
}

Scenario ReadScenarioText(const std::string& text, const std::string& file,
                          const std::string& base_dir) {
  JsonSource src(text, file);
  JsonNode root(src, src.Root(), "");
  root.OnlyKeys({"$schema", "name", "description", "outlook", "start", "log_level", "first_run",
                 "profile", "registry", "foldersets", "monitored_folders", "files", "timeline",
                 "expect"});
  Scenario s;
  s.source = file;
  s.base_dir = base_dir;
  s.name = root.String("name", std::filesystem::path(file).stem().string());
  s.description = root.String("description");
  if (auto o = root.Get("outlook")) {
    o->OnlyKeys({"version"});
    s.outlook_version = o->String("version", s.outlook_version);
    const std::string& v = s.outlook_version;
    // Numbers and dots, as Outlook's Version property gives them.
    const bool form =
        !v.empty() && v.size() <= 32 && std::isdigit(static_cast<unsigned char>(v[0])) &&
        v.find('.') != std::string::npos && v.find_first_not_of("0123456789.") == std::string::npos;
    const int major = form ? std::atoi(v.substr(0, std::min<size_t>(v.find('.'), 3)).c_str()) : 0;
    if (major < 8) {
      o->Need("version").Fail("expected Outlook's version text, as \"11.0.0.8312\"");
    }
  }
  if (auto t = root.Get("start")) s.start_time = ReadTime(*t);
  s.log_level = static_cast<int32_t>(root.Int("log_level", 3, 0, 3));
  s.first_run = root.Bool("first_run", false);
  s.profile = ReadProfile(root.Need("profile"));
  if (auto r = root.Get("registry")) s.registry = ReadRegistry(*r, base_dir);
  if (auto sets = root.Get("foldersets")) {
    for (const JsonNode& f : sets->Elements()) {
      f.OnlyKeys({"contacts", "email", "journal", "shared_calendar", "shared_journal",
                  "shared_tasks", "flags"});
      FoldersetSpec set;
      set.source_line = f.Line();
      set.contacts = f.Need("contacts").AsString();
      set.email = f.String("email");
      set.journal = f.String("journal");
      set.shared_calendar = f.String("shared_calendar");
      set.shared_journal = f.String("shared_journal");
      set.shared_tasks = f.String("shared_tasks");
      set.flags = static_cast<int32_t>(f.Int("flags", 0, 0, 0x7FFFFFFF));
      s.foldersets.push_back(set);
    }
  }
  if (auto mons = root.Get("monitored_folders")) {
    for (const JsonNode& m : mons->Elements()) {
      m.OnlyKeys({"folder", "flags"});
      s.monitored_folders.push_back({m.Need("folder").AsString(),
                                     static_cast<int32_t>(m.Int("flags", 0, 0, 0x7FFFFFFF)),
                                     m.Line()});
    }
  }
  if (auto f = root.Get("files")) s.files = ReadFiles(*f);
  if (auto t = root.Get("timeline")) {
    for (const JsonNode& e : t->Elements()) {
      StepSpec step = ReadStep(e, base_dir);
      if (auto at = e.Get("at")) {
        // "at": time passes until that moment, then the step happens.
        StepSpec wait;
        wait.kind = StepKind::kWait;
        wait.source_line = step.source_line;
        wait.pointer = at->Pointer();
        wait.until = ReadTime(*at);
        s.timeline.push_back(wait);
      }
      s.timeline.push_back(std::move(step));
    }
  }
  if (auto e = root.Get("expect")) {
    for (const JsonNode& x : e->Elements()) s.expect.push_back(ReadExpect(x));
  }

  std::set<std::string> ids;
  for (const StoreSpec& store : s.profile.stores) {
    for (const FolderSpec& f : store.folders) CollectIds(f, ids, src);
  }
  for (const StepSpec& step : s.timeline) {
    if (step.item && !step.item->id.empty() && !ids.insert(step.item->id).second) {
      throw InputError(file, step.source_line, "item/id",
                       "the item id \"" + Excerpt(step.item->id) + "\" is used twice");
    }
  }
  for (const StoreSpec& store : s.profile.stores) {
    for (const FolderSpec& f : store.folders) CheckLinks(f, ids, src);
  }
  auto known = [&](const std::string& id, int line, const char* field) {
    if (!id.empty() && !ids.count(id)) {
      throw InputError(file, line, field, "no item has the id \"" + Excerpt(id) + "\"");
    }
  };
  for (const StepSpec& step : s.timeline) {
    known(step.target, step.source_line, "target");
    known(step.fault.target, step.source_line, "target");
    for (const ExpectSpec& x : step.checks) known(x.target, x.source_line, "item");
    for (const std::string& sel : step.selection) known(sel, step.source_line, "selection");
    for (const std::string& l : step.link_items) known(l, step.source_line, "link_items");
    if (step.item) {
      for (const std::string& l : step.item->links) known(l, step.source_line, "item/links");
    }
  }
  for (const ExpectSpec& x : s.expect) known(x.target, x.source_line, "item");
  CheckTimeline(s);
  return s;
}

}  // namespace zintra::simtool
