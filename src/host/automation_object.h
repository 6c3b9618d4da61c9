// AutomationObject: the common base of every object the host hands out (Outlook's
// objects, the MAPI library's objects, anything created by ProgID). It stands for a
// late-bound object reference: callers test what an object is with
// std::dynamic_pointer_cast to the interface they need, exactly where late-bound code
// would have called a member and hoped. TypeName is VB's TypeName (e.g. "MailItem",
// "MAPIFolder", "NameSpace"). Objects are held as std::shared_ptr; Nothing is nullptr.
#pragma once

#include <string>

namespace zintra {

class AutomationObject {
 public:
  virtual ~AutomationObject() = default;
  virtual std::string TypeName() const = 0;
};

}  // namespace zintra
