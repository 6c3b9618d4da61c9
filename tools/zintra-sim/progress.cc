#include "tools/zintra-sim/progress.h"

#include <algorithm>
#include <ostream>

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
  EraseLive();
  out_ << "[" << FormatIsoTime(now).substr(11) << "] " << Describe(step) << "\n";
}

void Progress::Note(const std::string& text) {
  if (quiet_) return;
  EraseLive();
  out_ << "  note: " << text << "\n";
}

std::string Progress::Bar(const TaskRow& row, int width) {
  int percent = std::clamp(row.percent, 0, 100);
  int filled = percent * width / 100;
  std::string p = std::to_string(percent);
  return "[" + std::string(filled, '#') + std::string(width - filled, '-') + "] " +
         std::string(3 - std::min<size_t>(3, p.size()), ' ') + p + "%  " + row.description;
}

void Progress::Update(const std::vector<TaskRow>& rows, int queued) {
  if (quiet_) return;
  if (live_) {
    std::string block;
    for (const TaskRow& row : rows) block += "  " + Bar(row, 24) + "\n";
    if (!rows.empty() || queued > 0) block += "  " + std::to_string(queued) + " job(s) queued\n";
    if (block == last_live_) return;
    EraseLive();
    out_ << block << std::flush;
    live_lines_ = static_cast<int>(std::count(block.begin(), block.end(), '\n'));
    last_live_ = block;
    return;
  }
  std::map<std::string, std::pair<std::string, int>> now;
  for (const TaskRow& row : rows) {
    int quarter = std::clamp(row.percent, 0, 100) / 25;
    auto seen = shown_.find(row.key);
    if (seen == shown_.end()) {
      out_ << "  task started: " << row.description << "\n";
      now[row.key] = {row.description, 0};
    } else {
      now[row.key] = seen->second;
    }
    if (quarter > now[row.key].second && quarter < 4) {
      out_ << "  task " << quarter * 25 << "%: " << row.description << "\n";
      now[row.key].second = quarter;
    }
  }
  for (const auto& [key, shown] : shown_) {
    if (!now.count(key)) out_ << "  task done: " << shown.first << "\n";
  }
  shown_ = std::move(now);
}

void Progress::EraseLive() {
  // Up over the block, clearing it, so the next lines take its place.
  for (; live_lines_ > 0; --live_lines_) out_ << "\x1b[1A\x1b[2K";
  out_ << std::flush;
  last_live_.clear();
}

void Progress::Done() {
  if (quiet_) return;
  Update({}, 0);
  EraseLive();
}

}  // namespace zintra::simtool
