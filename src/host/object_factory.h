// ObjectFactory: creates a registered class by its ProgID (COM's CreateObject).
// Called on Outlook's thread. An unknown ProgID, or a class whose creation fails,
// throws ZError with the platform's number (429: "ActiveX component can't create
// object"). The caller owns the returned object; it is never nullptr.
#pragma once

#include <memory>
#include <string>

#include "src/host/automation_object.h"

namespace zintra {

inline constexpr int32_t kErrCannotCreateObject = 429;

class ObjectFactory {
 public:
  virtual ~ObjectFactory() = default;
  virtual std::shared_ptr<AutomationObject> CreateObject(const std::string& prog_id) = 0;
};

}  // namespace zintra
