// ICheckLinger: an object that, after the add-in's Kill broadcast, reports what it
// still holds as warning lines in the log. The check only writes; it changes
// nothing. It may throw; the caller logs the error and goes on with the others.
#pragma once

namespace zintra {

class ICheckLinger {
 public:
  virtual ~ICheckLinger() = default;
  virtual void CheckLingeringRefs() = 0;
};

}  // namespace zintra
