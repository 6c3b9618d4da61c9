#include "src/errors/programming_error.h"

#include <new>
#include <typeinfo>
#include <utility>

#if __has_include(<cxxabi.h>)
#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#endif

#include "src/core/z_error.h"

namespace zintra {
namespace {

ProgrammingErrorObserver& Observer() {
  static ProgrammingErrorObserver observer;
  return observer;
}

std::string TypeName(const std::type_info& type) {
#if __has_include(<cxxabi.h>)
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
  if (status == 0 && name) return name.get();
#endif
  return type.name();
}

}  // namespace

ProgrammingErrorObserver SetProgrammingErrorObserver(ProgrammingErrorObserver observer) {
  return std::exchange(Observer(), std::move(observer));
}

std::string NoteIfProgrammingError(const std::exception_ptr& error) {
  if (!error) return {};
  std::string description;
  try {
    std::rethrow_exception(error);
  } catch (const ZError&) {
    return {};
  } catch (const std::bad_alloc&) {
    return {};
  } catch (const std::exception& e) {
    description = "Programming error: " + TypeName(typeid(e)) + ": " + e.what();
  } catch (...) {
    description = "Programming error: an exception of unknown type";
  }
  if (const ProgrammingErrorObserver& observer = Observer()) observer(description);
  return description;
}

void IgnoreCurrentException() { NoteIfProgrammingError(std::current_exception()); }

}  // namespace zintra
