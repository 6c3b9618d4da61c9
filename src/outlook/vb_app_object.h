// VbAppObject: the add-in's single global Outlook application object. The object
// Outlook handed over at connection is used when set; otherwise one is created by
// ProgID "Outlook.Application" on first use and kept. Creation failures propagate
// as the object factory raises them. Borrows the object factory.
#pragma once

#include <memory>

namespace zintra {

class Application;
class ObjectFactory;

inline constexpr char kOutlookApplicationProgId[] = "Outlook.Application";

class VbAppObject {
 public:
  explicit VbAppObject(ObjectFactory& factory) : factory_(factory) {}
  void Set(std::shared_ptr<Application> application) { application_ = std::move(application); }
  void Release() { application_.reset(); }
  // The application object (never nullptr; throws when it cannot be created).
  std::shared_ptr<Application> Get();

 private:
  ObjectFactory& factory_;
  std::shared_ptr<Application> application_;
};

}  // namespace zintra
