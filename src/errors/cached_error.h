// CachedError: a copy of a raised error that a handler keeps, extends with its own
// step of the propagation trail, and then logs, shows or raises again.
//
// Source layout: the source as first recorded; after the first step the marker
// "\r\n-->" and that step; every later step after "-->". A step is
// module + "." + procedure (a blank name shows as "?"), then "(" + line + ")" when the
// line is known (non-zero). Step 0 is the innermost procedure, the last the outermost.
//
// Step accessors taking an index throw ZError 9 (subscript out of range) for an index
// outside 0..PropogationCount()-1. Nothing else throws except Raise().
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "src/core/z_error.h"

namespace zintra {

class ErrorHandling;

class CachedError {
 public:
  CachedError() = default;
  // Same as a fresh record followed by SetTo(error, mod_name, proc_name, line).
  CachedError(const ZError& error, std::string_view mod_name, std::string_view proc_name,
              int32_t line = 0);

  // The record as text. With `display` set it opens with "An error occurred.  Details
  // are below." and a blank line; the rest is the same either way.
  std::string toString(bool display = false) const;

  const std::string& Description() const { return description_; }
  int32_t HelpContext() const { return help_context_; }
  const std::string& HelpFile() const { return help_file_; }
  int32_t LastDLLError() const { return last_dll_error_; }
  int32_t Number() const { return number_; }
  const std::string& Source() const { return source_; }

  // Throws the stored error (trail included in its source) when Number() is not 0;
  // does nothing otherwise.
  void Raise() const;
  // Copies the six fields of `error`, then appends one step when a line is known or
  // a module or procedure name is given.
  void SetTo(const ZError& error, std::string_view mod_name, std::string_view proc_name,
             int32_t line = 0);
  // For use inside catch (...): records the exception in flight. A ZError is copied
  // as is; any other exception becomes the run time's nearest error (7 for an
  // allocation failure, 5 otherwise) with the exception's text.
  void SetToCurrentException(std::string_view mod_name, std::string_view proc_name,
                             int32_t line = 0);
  CachedError Clone() const { return *this; }
  void Clear();
  // The error as a ZError (Source() including the trail), for code that rethrows by hand.
  ZError ToZError() const;

  std::vector<std::string> PropogationArray() const;
  std::string PropogationString() const;
  int32_t PropogationCount() const;
  std::string PropogatedMethod(int32_t index) const;
  std::string PropogatedModule(int32_t index) const;
  int32_t PropogatedLine(int32_t index) const;  // 0 when the step has no line
  std::string OrgSource() const;
  std::string InnermostMethod() const;
  std::string InnermostModule() const;
  int32_t InnermostLine() const;
  std::string OutermostMethod() const;
  std::string OutermostModule() const;
  int32_t OutermostLine() const;

  // Hand the record to the error log / show it to the user; nothing when Number() is 0.
  void Log(ErrorHandling& errors) const;
  void Display(ErrorHandling& errors) const;

  // The text of one step, as appended to the trail.
  static std::string FormatStep(std::string_view mod_name, std::string_view proc_name,
                                int32_t line);

  bool operator==(const CachedError&) const = default;

 private:
  void AppendStep(std::string_view mod_name, std::string_view proc_name, int32_t line);
  std::string Step(int32_t index) const;

  std::string description_;
  int32_t help_context_ = 0;
  std::string help_file_;
  int32_t last_dll_error_ = 0;
  int32_t number_ = 0;
  std::string source_;
};

}  // namespace zintra
