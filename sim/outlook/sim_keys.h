// Fault-injection keys: every simulated object names the record it stands for, so a
// rule can target "this item" whichever facade object the system happens to hold.
#pragma once

#include <memory>

#include "src/host/automation_object.h"

namespace zintra::sim {

class SimKeyed {
 public:
  virtual ~SimKeyed() = default;
  // The identity shared by every facade object of the same stored thing.
  virtual const void* FaultKey() const = 0;
};

struct MessageRecord;
struct FolderRecord;

// Implemented by every facade object that stands for a stored message (an Outlook
// item, a library message) or folder, so that either facade accepts the other's.
class MessageHolder {
 public:
  virtual ~MessageHolder() = default;
  virtual std::shared_ptr<MessageRecord> Message() const = 0;
};

class FolderHolder {
 public:
  virtual ~FolderHolder() = default;
  virtual std::shared_ptr<FolderRecord> FolderRec() const = 0;
};

// The key to pass to FaultInjector for `object`; nullptr for an object that is not
// one of the simulation's.
inline const void* ObjectKeyOf(const std::shared_ptr<AutomationObject>& object) {
  auto keyed = std::dynamic_pointer_cast<SimKeyed>(object);
  return keyed ? keyed->FaultKey() : nullptr;
}

}  // namespace zintra::sim
