// Win32ErrorLogFactory: creates the error-log component of the Windows host, the SQLite
// store that the simulated host also uses (table ErrorLog, size cap by dropping the
// oldest rows), here over real paths. Creation never fails; opening a file that cannot
// be written throws ZError 75 from Open.
#pragma once

#include <memory>

#include "src/host/error_log_store.h"

namespace zintra::win32 {

class Win32ErrorLogFactory : public ErrorLogFactory {
 public:
  std::shared_ptr<ErrorLogStore> CreateErrorLog() override;
};

}  // namespace zintra::win32
