// ComObjectFactory: COM's CreateObject — CLSIDFromProgID, then CoCreateInstance of the
// class's IDispatch (in process or in its own) — with the object wrapped in the adapter
// of the port its ProgID stands for: the MAPI library's classes ("TovuRedemption." +
// class name), Outlook's and Word's applications. Any other class comes back as a
// late-bound ComObject (also a Dispatchable), which is all the keep-alive program and the
// options page need. Classes the add-in implements in its own code (the subclassing
// service) are registered as C++ constructors and never reach COM.
//
// Failures: a ProgID that is not registered, or a class that cannot be created, throws
// 429 ("ActiveX component can't create object"); a class without automation 430; any
// other failure of the class its own number. COM must be initialised on the calling
// thread (Outlook has done so for an add-in).
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "src/host/object_factory.h"
#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class ComObjectFactory : public ObjectFactory {
 public:
  using Constructor = std::function<std::shared_ptr<AutomationObject>()>;

  // ProgIDs compare without regard to letter case; a second registration replaces the first.
  void RegisterNative(const std::string& prog_id, Constructor construct);
  std::shared_ptr<AutomationObject> CreateObject(const std::string& prog_id) override;

  // The bare automation object of a registered class; throws as above.
  static ComPtr<IDispatch> CreateDispatch(const std::string& prog_id);
  // The adapter for an object of the class `prog_id`.
  static std::shared_ptr<AutomationObject> WrapByProgId(const std::string& prog_id,
                                                        const ComPtr<IDispatch>& object);

 private:
  std::map<std::string, Constructor> natives_;  // by lower-cased ProgID
};

}  // namespace zintra::win32
