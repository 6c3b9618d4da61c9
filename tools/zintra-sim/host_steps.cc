#include "tools/zintra-sim/host_steps.h"

#include <cctype>
#include <climits>
#include <cstdlib>
#include <stdexcept>

#include "sim/outlook/sim_item.h"
#include "src/core/text.h"
#include "src/host/msg_box.h"
#include "tools/zintra-sim/fault_members.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/world.h"

namespace zintra::simtool {

namespace {

// What only playing shows (an item or folder gone by then) is bad input like the rest:
// the run stops naming the step, and nothing is written.
InputError RunError(const World& w, const StepSpec& step, const std::string& field,
                    const std::string& what) {
  return InputError(w.scenario().source, step.source_line, step.pointer + field, what);
}

void PlayFault(World& w, const StepSpec& step) {
  const FaultSpec& f = step.fault;
  std::string name = f.member.substr(f.member.find('.') + 1);
  if (IsRegistryOrFileMember(f.member)) {
    // Both count their own calls: skip that many, then fail once or from then on.
    int skip = f.mode == "call" ? static_cast<int>(f.n - 1) : static_cast<int>(f.n);
    int times = f.mode == "call" ? 1 : -1;
    if (text::StartsWith(f.member, "Registry.")) {
      w.outlook().registry.FailCall(name, f.error, skip, times);
    } else {
      w.outlook().files.FailCall(name, f.error, skip, times);
    }
    return;
  }
  const void* object = nullptr;
  if (!f.target.empty()) {
    object = w.loader().FindItem(f.target).get();
    if (!object)
      throw RunError(w, step, "/target",
                     "the item \"" + Excerpt(f.target) + "\" is no longer in the profile");
  } else if (!f.folder.empty()) {
    object = w.loader().FindFolder(f.folder).get();
    if (!object) {
      throw RunError(w, step, "/folder", "no folder \"" + Excerpt(f.folder) + "\" in the profile");
    }
  }
  using Mode = sim::FaultInjector::Mode;
  Mode mode = f.mode == "call"    ? Mode::kOnCall
              : f.mode == "after" ? Mode::kAfterCalls
                                  : Mode::kAlways;
  w.profile().Faults().Add(f.member, mode, f.n, f.error, f.text, object);
}

}  // namespace

void PlayHostStep(World& w, const StepSpec& step) {
  switch (step.kind) {
    case StepKind::kFail:
      PlayFault(w, step);
      break;
    case StepKind::kHeal:
      w.profile().Faults().Clear();
      w.outlook().registry.ClearFaults();
      w.outlook().files.ClearFaults();
      break;
    case StepKind::kRemoveFolder: {
      auto folder = w.loader().FindFolder(step.fault.folder);
      if (!folder) {
        throw RunError(w, step, "/folder",
                       "no folder \"" + Excerpt(step.fault.folder) + "\" in the profile");
      }
      w.profile().DeleteFolder(folder);
      break;
    }
    case StepKind::kAnswer:
      for (int32_t a : step.answers.message_box) w.outlook().msg_box.Answer(a);
      for (const std::string& a : step.answers.optional) {
        sim::OptionalMsgBoxAction action;
        action.tick = a == "tick";
        action.untick = a == "untick";
        action.close_box = a == "close";
        w.outlook().dialogs.Script(action);
      }
      break;
    case StepKind::kWindowMessage: {
      // The message goes to the window showing the item, as Windows would post it.
      auto record = w.loader().FindItem(step.target);
      if (!record) {
        throw RunError(w, step, "/target",
                       "the item \"" + Excerpt(step.target) + "\" is no longer in the profile");
      }
      for (const auto& insp : w.outlook().app().OpenInspectors()) {
        if (sim::RecordOf(insp->CurrentItem()) == record) {
          w.outlook().app().WindowMessage.Raise(insp->Hwnd(), step.message, step.wparam);
          return;
        }
      }
      throw RunError(w, step, "/target",
                     "no window shows the item \"" + Excerpt(step.target) + "\"");
    }
    default:
      break;
  }
}

}  // namespace zintra::simtool
