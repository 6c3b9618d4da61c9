#include "src/core/z_error.h"

#include <utility>

namespace zintra {

ZError::ZError(int32_t number, std::string description, std::string source, std::string help_file,
               int32_t help_context, int32_t last_dll_error)
    : number_(number),
      description_(description.empty() ? StandardDescription(number) : std::move(description)),
      source_(std::move(source)),
      help_file_(std::move(help_file)),
      help_context_(help_context),
      last_dll_error_(last_dll_error) {}

std::string ZError::StandardDescription(int32_t number) {
  switch (number) {
    case 5:
      return "Invalid procedure call or argument";
    case 6:
      return "Overflow";
    case 7:
      return "Out of memory";
    case 9:
      return "Subscript out of range";
    case 11:
      return "Division by zero";
    case 13:
      return "Type mismatch";
    case 52:
      return "Bad file name or number";
    case 53:
      return "File not found";
    case 70:
      return "Permission denied";
    case 75:
      return "Path/File access error";
    case 91:
      return "Object variable or With block variable not set";
    case 424:
      return "Object required";
    case 429:
      return "ActiveX component can't create object";
    case 438:
      return "Object doesn't support this property or method";
    case 457:
      return "This key is already associated with an element of this collection";
    default:
      return {};
  }
}

}  // namespace zintra
