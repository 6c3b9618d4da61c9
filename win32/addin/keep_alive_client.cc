#include "win32/addin/keep_alive_client.h"

#include <vector>

#include "src/core/text.h"
#include "win32/com/variant.h"

namespace zintra::win32 {

Value KeepAliveClient::Invoke(std::string_view name, const Value* arg) {
  if (arg == nullptr && text::EqualsNoCase(name, "Initialize")) {
    ComPtr<IDispatch> outlook = outlook_ ? outlook_() : ComPtr<IDispatch>();
    if (outlook) {
      object_.Client().Call(name, {Variant(outlook)});
      return Value{};
    }
  }
  return object_.Invoke(name, arg);
}

}  // namespace zintra::win32
