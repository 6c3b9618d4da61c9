#include "tools/zintra-sim/job_moment.h"

#include "src/addin/zintra_addin_app.h"
#include "src/core/text.h"
#include "src/jobs/job_queue.h"
#include "tools/zintra-sim/world.h"

namespace zintra::simtool {

void JobMoments::PlayDuringJob(const std::string& job, int line, std::function<void()> play) {
  auto p = std::make_shared<Pending>(Pending{job, line, std::move(play), false});
  pending_.push_back(p);
  Arm(p);
}

void JobMoments::Arm(const std::shared_ptr<Pending>& p) {
  // Delivered at the next pump; when no job is active then, it waits for the next one.
  world_.outlook().loop.Post([this, p] {
    std::shared_ptr<ZintraAddinApp> addin = world_.Addin();
    std::shared_ptr<JobQueue> queue = addin ? addin->GetJobQueue() : nullptr;
    std::shared_ptr<IJob> active = queue ? queue->ActiveJob() : nullptr;
    bool now = false;
    if (active) {
      now = p->job.empty() || text::StartsWith(active->JobDescription(), p->job);
    } else {
      // After a step that unloaded the add-in inside this pump, the next ones play in it too.
      const int64_t pump = world_.outlook().loop.do_events_count();
      for (const auto& other : pending_) {
        if (other.get() != p.get() && other->played && other->pump == pump) now = true;
      }
    }
    if (!now) {
      Arm(p);
      return;
    }
    p->played = true;
    p->pump = world_.outlook().loop.do_events_count();
    p->play();
  });
}

std::vector<std::string> JobMoments::NeverPlayed() const {
  std::vector<std::string> out;
  for (const auto& p : pending_) {
    if (!p->played) {
      out.push_back("line " + std::to_string(p->line) + ": no job" +
                    (p->job.empty() ? std::string() : " '" + p->job + "...'") +
                    " pumped messages, so the step never played");
    }
  }
  return out;
}

}  // namespace zintra::simtool
