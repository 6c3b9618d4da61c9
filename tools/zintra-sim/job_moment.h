// JobMoment: a step that plays while one of the add-in's jobs is in the middle of an
// activation ("during": "job"): the step waits as a window message until the add-in
// pumps messages (DoEvents) with a job active, as a window closing or the add-in being
// unloaded reaches it while a job pumps. Steps posted together play in one pump, in
// order. A step whose moment never came is reported after the timeline.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zintra::simtool {

class World;

class JobMoments {
 public:
  explicit JobMoments(World& world) : world_(world) {}
  // `job`: the start of the active job's description ("" any job).
  void PlayDuringJob(const std::string& job, int line, std::function<void()> play);
  // "line 12: no job was active ..." for every step that never played.
  std::vector<std::string> NeverPlayed() const;

 private:
  struct Pending {
    std::string job;
    int line = 0;
    std::function<void()> play;
    bool played = false;
    int64_t pump = -1;  // the message pump it played in
  };
  void Arm(const std::shared_ptr<Pending>& p);

  World& world_;
  std::vector<std::shared_ptr<Pending>> pending_;
};

}  // namespace zintra::simtool
