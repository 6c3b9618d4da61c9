#include "src/core/type_name.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#if __has_include(<cxxabi.h>)
#include <cxxabi.h>
#define ZINTRA_HAVE_CXXABI 1
#endif

namespace zintra {
namespace {

// Drops "class "/"struct " (MSVC's names) and every enclosing scope, but keeps
// template arguments whole.
std::string Unqualified(std::string_view name) {
  for (std::string_view prefix : {"class ", "struct "}) {
    if (name.substr(0, prefix.size()) == prefix) name.remove_prefix(prefix.size());
  }
  size_t start = 0;
  int depth = 0;
  for (size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '<') ++depth;
    if (name[i] == '>') --depth;
    if (depth == 0 && name[i] == ':' && i + 1 < name.size() && name[i + 1] == ':') {
      start = i + 2;
      ++i;
    }
  }
  return std::string(name.substr(start));
}

}  // namespace

std::string TypeName(const std::type_info& type) {
#ifdef ZINTRA_HAVE_CXXABI
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> demangled(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
  if (status == 0 && demangled) return Unqualified(demangled.get());
#endif
  return Unqualified(type.name());
}

}  // namespace zintra
