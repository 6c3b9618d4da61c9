#include "src/outlook/vb_app_object.h"

#include "src/core/z_error.h"
#include "src/host/object_factory.h"
#include "src/host/outlook_application.h"

namespace zintra {

std::shared_ptr<Application> VbAppObject::Get() {
  if (!application_) {
    auto created =
        std::dynamic_pointer_cast<Application>(factory_.CreateObject(kOutlookApplicationProgId));
    if (!created) throw ZError(kErrTypeMismatch, "Type mismatch");
    application_ = std::move(created);
  }
  return application_;
}

}  // namespace zintra
