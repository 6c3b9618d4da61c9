// SimMapiObject: the MAPI object under a simulated message, folder or session (the
// MAPIOBJECT property). The MAPI library facade reads and writes through it.
#pragma once

#include <memory>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

class SimMapiObject : public MapiObject, public SimKeyed {
 public:
  enum class Kind { kMessage, kFolder, kSession };

  explicit SimMapiObject(Profile* profile) : profile_(profile), kind_(Kind::kSession) {}
  SimMapiObject(Profile* profile, std::shared_ptr<MessageRecord> message)
      : profile_(profile), kind_(Kind::kMessage), message_(std::move(message)) {}
  SimMapiObject(Profile* profile, std::shared_ptr<FolderRecord> folder)
      : profile_(profile), kind_(Kind::kFolder), folder_(std::move(folder)) {}

  std::string TypeName() const override {
    switch (kind_) {
      case Kind::kMessage:
        return "IMessage";
      case Kind::kFolder:
        return "IMAPIFolder";
      case Kind::kSession:
        return "IMAPISession";
    }
    return "IUnknown";
  }
  const void* FaultKey() const override {
    if (message_) return message_.get();
    if (folder_) return folder_.get();
    return profile_;
  }

  Profile* profile() const { return profile_; }
  Kind kind() const { return kind_; }
  const std::shared_ptr<MessageRecord>& message() const { return message_; }
  const std::shared_ptr<FolderRecord>& folder() const { return folder_; }

 private:
  Profile* profile_;
  Kind kind_;
  std::shared_ptr<MessageRecord> message_;
  std::shared_ptr<FolderRecord> folder_;
};

}  // namespace zintra::sim
