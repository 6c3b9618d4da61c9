#include "win32/ports/win32_error_log_factory.h"

#include "hosts/errorlog/sqlite_error_log.h"

namespace zintra::win32 {

std::shared_ptr<ErrorLogStore> Win32ErrorLogFactory::CreateErrorLog() {
  return std::make_shared<hosts::SqliteErrorLog>();
}

}  // namespace zintra::win32
