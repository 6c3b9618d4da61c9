#include "win32/addin/com_add_in_adapter.h"

namespace zintra::win32 {

std::string ComAddInAdapter::ProgId() const { return client_.GetValue("ProgId").ToString(); }

std::string ComAddInAdapter::Description() const {
  return client_.GetValue("Description").ToString();
}

bool ComAddInAdapter::Connect() const { return client_.GetValue("Connect").ToBool(); }

}  // namespace zintra::win32
