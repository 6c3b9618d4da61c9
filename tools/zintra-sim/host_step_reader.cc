// Reading the host steps: strict, like every step, and apart from playing them so that
// the scenario reader needs nothing of the simulated host (its fuzz target links it alone).
#include "tools/zintra-sim/host_steps.h"

#include <climits>
#include <cstdlib>
#include <stdexcept>

#include "src/core/text.h"
#include "src/host/msg_box.h"
#include "tools/zintra-sim/fault_members.h"

namespace zintra::simtool {

namespace {

// An error number: decimal (negative for HRESULTs) or "0x8004010F".
int32_t ReadErrorNumber(const JsonNode& n) {
  if (n.IsString()) {
    std::string t = n.AsString();
    char* end = nullptr;
    unsigned long long v = text::StartsWith(text::LCase(t), "0x")
                               ? std::strtoull(t.c_str() + 2, &end, 16)
                               : std::strtoull(t.c_str(), &end, 10);
    if (t.size() < 3 || *end != '\0' || v == 0 || v > 0xFFFFFFFFULL) {
      n.Fail("expected an error number such as -2147221233 or \"0x8004010F\"");
    }
    return static_cast<int32_t>(static_cast<uint32_t>(v));
  }
  int64_t v = n.AsInt(INT32_MIN, 0xFFFFFFFFLL);
  if (v == 0) n.Fail("expected a non-zero error number");
  return static_cast<int32_t>(static_cast<uint32_t>(v));
}

void ReadFault(const JsonNode& n, FaultSpec& f) {
  n.OnlyKeys({"do", "at", "note", "member", "error", "text", "call", "after", "target", "folder"});
  JsonNode member = n.Need("member");
  f.member = member.AsString();
  if (!IsFaultMember(f.member)) member.Fail(FaultMemberChoices(f.member));
  f.error = ReadErrorNumber(n.Need("error"));
  f.text = n.String("text");
  if (n.Has("call") && n.Has("after")) n.Fail("give \"call\" or \"after\", not both");
  if (auto c = n.Get("call")) {
    f.mode = "call";
    f.n = c->AsInt(1, 1 << 30);
  } else if (auto a = n.Get("after")) {
    f.mode = "after";
    f.n = a->AsInt(0, 1 << 30);
  }
  f.target = n.String("target");
  f.folder = n.String("folder");
  if (IsRegistryOrFileMember(f.member) && (n.Has("target") || n.Has("folder"))) {
    n.Fail("only members of Outlook and the MAPI library fail for one item or folder");
  }
  if (n.Has("target") && n.Has("folder")) n.Fail("give \"target\" or \"folder\", not both");
}

int32_t MsgBoxAnswer(const JsonNode& n) {
  static constexpr std::pair<const char*, int32_t> kAnswers[] = {
      {"ok", kMsgBoxResultOK},       {"cancel", kMsgBoxResultCancel}, {"abort", kMsgBoxResultAbort},
      {"retry", kMsgBoxResultRetry}, {"ignore", kMsgBoxResultIgnore}, {"yes", kMsgBoxResultYes},
      {"no", kMsgBoxResultNo}};
  std::string a = n.AsString();
  for (const auto& [name, value] : kAnswers) {
    if (a == name) return value;
  }
  n.Fail("expected ok, cancel, abort, retry, ignore, yes or no");
}

void ReadAnswers(const JsonNode& n, AnswerSpec& a) {
  n.OnlyKeys({"do", "at", "note", "message_box", "optional"});
  if (!n.Has("message_box") && !n.Has("optional")) {
    n.Fail("\"answer\" needs \"message_box\" or \"optional\" answers");
  }
  if (auto m = n.Get("message_box")) {
    if (m->IsString()) {
      a.message_box.push_back(MsgBoxAnswer(*m));
    } else {
      for (const JsonNode& e : m->Elements()) a.message_box.push_back(MsgBoxAnswer(e));
    }
  }
  if (auto o = n.Get("optional")) {
    std::vector<JsonNode> answers = o->IsString() ? std::vector<JsonNode>{*o} : o->Elements();
    for (const JsonNode& e : answers) {
      std::string t = e.AsString();
      if (t != "ok" && t != "tick" && t != "untick" && t != "close") {
        e.Fail("expected ok, tick, untick or close");
      }
      a.optional.push_back(t);
    }
  }
}

}  // namespace

bool IsHostStep(StepKind kind) {
  return kind == StepKind::kFail || kind == StepKind::kHeal || kind == StepKind::kRemoveFolder ||
         kind == StepKind::kAnswer || kind == StepKind::kWindowMessage;
}

void ReadHostStep(const JsonNode& n, StepSpec& step) {
  switch (step.kind) {
    case StepKind::kFail:
      ReadFault(n, step.fault);
      break;
    case StepKind::kHeal:
      n.OnlyKeys({"do", "at", "note"});
      break;
    case StepKind::kRemoveFolder:
      n.OnlyKeys({"do", "at", "note", "folder"});
      step.fault.folder = n.Need("folder").AsString();
      break;
    case StepKind::kAnswer:
      ReadAnswers(n, step.answers);
      break;
    case StepKind::kWindowMessage:
      n.OnlyKeys({"do", "at", "note", "target", "message", "wparam"});
      step.target = n.Need("target").AsString();
      step.message = static_cast<int32_t>(n.Need("message").AsInt(0, 0xFFFF));
      step.wparam = static_cast<int32_t>(n.Int("wparam", 0, INT32_MIN, INT32_MAX));
      break;
    default:
      break;
  }
}

}  // namespace zintra::simtool
