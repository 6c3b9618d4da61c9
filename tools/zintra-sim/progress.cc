#include "tools/zintra-sim/progress.h"

#include <ostream>

#include "src/addin/zintra_addin_app.h"
#include "src/jobs/job_queue.h"
#include "src/ui/frm_task_list.h"

namespace zintra::simtool {

namespace {

std::string Duration(double seconds) {
  if (seconds >= 3600 && static_cast<long>(seconds) % 3600 == 0) {
    return std::to_string(static_cast<long>(seconds / 3600)) + "h";
  }
  if (seconds >= 60 && static_cast<long>(seconds) % 60 == 0) {
    return std::to_string(static_cast<long>(seconds / 60)) + "m";
  }
  return std::to_string(static_cast<long>(seconds)) + "s";
}

}  // namespace

std::string Progress::Describe(const StepSpec& s) {
  std::string d = StepName(s.kind);
  switch (s.kind) {
    case StepKind::kStart:
      return d + " (" + s.windows + (s.addin ? ", add-in loaded)" : ", add-in not loaded)");
    case StepKind::kDeliver:
    case StepKind::kSend:
    case StepKind::kAdd:
      return d + " '" + s.item->subject + "'" +
             (s.folder.empty() ? "" : " into '" + s.folder + "'");
    case StepKind::kWait:
      return s.until != 0 ? "time passes until " + FormatIsoTime(s.until)
                          : "time passes: " + Duration(s.seconds);
    case StepKind::kChange:
    case StepKind::kDelete:
    case StepKind::kOpenInspector:
    case StepKind::kCloseInspector:
      return d + " '" + s.target + "'";
    case StepKind::kClick:
      return d + " '" + s.button + "'";
    default:
      return d;
  }
}

void Progress::Step(const StepSpec& step, double now) {
  if (quiet_) return;
  EndLiveLine();
  out_ << "[" << FormatIsoTime(now).substr(11) << "] " << Describe(step) << "\n";
  last_.clear();
}

void Progress::Update(const std::shared_ptr<ZintraAddinApp>& addin) {
  if (quiet_ || !addin) return;
  std::shared_ptr<JobQueue> queue = addin->GetJobQueue();
  if (!queue) return;
  frmTaskList* tasks = queue->TaskListForm();
  int entries = tasks ? tasks->EntryCount() : 0;
  int percent = tasks && tasks->TotalUnits() > 0
                    ? static_cast<int>(100.0 * tasks->DoneUnits() / tasks->TotalUnits())
                    : 0;
  int queued = queue->QueuedJobsCount();
  if (entries == 0 && queued == 0 && last_.empty()) return;
  std::string status =
      std::to_string(entries) + " task(s), " + std::to_string(queued) + " job(s) queued";
  if (live_) {
    constexpr int kWidth = 30;
    int filled = percent * kWidth / 100;
    std::string bar = "[" + std::string(filled, '#') + std::string(kWidth - filled, '-') + "] ";
    out_ << "\r  task list " << bar << percent << "%  " << status << "   " << std::flush;
    live_line_ = true;
    last_ = status;
  } else if (status != last_) {
    out_ << "  task list: " << status << (entries ? ", " + std::to_string(percent) + "% done" : "")
         << "\n";
    last_ = status;
  }
}

void Progress::EndLiveLine() {
  if (live_line_) out_ << "\n";
  live_line_ = false;
}

void Progress::Done() {
  if (!quiet_) EndLiveLine();
}

}  // namespace zintra::simtool
