#include "src/errors/cached_error.h"

#include <exception>
#include <new>
#include <string_view>

#include "src/core/text.h"
#include "src/errors/programming_error.h"

namespace zintra {
namespace {

constexpr std::string_view kTrailMarker = "\r\n-->";
constexpr std::string_view kStepMarker = "-->";
constexpr std::string_view kCrLf = "\r\n";
constexpr int32_t kErrOutOfMemory = 7;

// The parts of one step "Module.Proc(12)".
struct StepParts {
  std::string module;
  std::string method;
  int32_t line = 0;
};

StepParts ParseStep(std::string_view step) {
  StepParts parts;
  std::string_view rest = step;
  // A line number is a trailing "(digits)".
  if (!rest.empty() && rest.back() == ')') {
    size_t open = rest.rfind('(');
    if (open != std::string_view::npos) {
      std::string_view digits = rest.substr(open + 1, rest.size() - open - 2);
      bool numeric = !digits.empty();
      int64_t value = 0;
      for (size_t i = 0; i < digits.size() && numeric; ++i) {
        char c = digits[i];
        if (c == '-' && i == 0 && digits.size() > 1) continue;
        if (c < '0' || c > '9') {
          numeric = false;
        } else if (value < 1000000000) {
          value = value * 10 + (c - '0');
        }
      }
      if (numeric) {
        parts.line = static_cast<int32_t>(digits.front() == '-' ? -value : value);
        rest = rest.substr(0, open);
      }
    }
  }
  size_t dot = rest.find('.');
  if (dot == std::string_view::npos) {
    parts.method = std::string(rest);
  } else {
    parts.module = std::string(rest.substr(0, dot));
    parts.method = std::string(rest.substr(dot + 1));
  }
  return parts;
}

}  // namespace

CachedError::CachedError(const ZError& error, std::string_view mod_name, std::string_view proc_name,
                         int32_t line) {
  SetTo(error, mod_name, proc_name, line);
}

std::string CachedError::FormatStep(std::string_view mod_name, std::string_view proc_name,
                                    int32_t line) {
  std::string step = mod_name.empty() ? std::string("?") : std::string(mod_name);
  step += '.';
  step += proc_name.empty() ? std::string_view("?") : proc_name;
  if (line != 0) step += "(" + std::to_string(line) + ")";
  return step;
}

std::string CachedError::toString(bool display) const {
  std::string text;
  if (display) {
    text += "An error occurred.  Details are below.";
    text += kCrLf;
    text += kCrLf;
  }
  text += "Error Number: " + std::to_string(number_);
  text += kCrLf;
  text += "Description: " + description_;
  text += kCrLf;
  text += kCrLf;
  text += "Source: " + OrgSource();
  text += kCrLf;
  text += "Propogation Trail (for tech support): ";
  text += kCrLf;
  text += PropogationString();
  return text;
}

void CachedError::Raise() const {
  if (number_ == 0) return;
  throw ToZError();
}

ZError CachedError::ToZError() const {
  return ZError(number_, description_, source_, help_file_, help_context_, last_dll_error_);
}

void CachedError::SetTo(const ZError& error, std::string_view mod_name, std::string_view proc_name,
                        int32_t line) {
  description_ = error.Description();
  help_context_ = error.HelpContext();
  help_file_ = error.HelpFile();
  last_dll_error_ = error.LastDllError();
  number_ = error.Number();
  source_ = error.Source();
  AppendStep(mod_name, proc_name, line);
}

void CachedError::SetToCurrentException(std::string_view mod_name, std::string_view proc_name,
                                        int32_t line) {
  try {
    throw;
  } catch (const ZError& e) {
    SetTo(e, mod_name, proc_name, line);
  } catch (const std::bad_alloc&) {
    SetTo(ZError(kErrOutOfMemory, ZError::StandardDescription(kErrOutOfMemory)), mod_name,
          proc_name, line);
  } catch (...) {
    // Not the system's own error: a fault in the code, recorded as such.
    SetTo(ZError(kErrInternal, NoteIfProgrammingError(std::current_exception())), mod_name,
          proc_name, line);
  }
}

void CachedError::AppendStep(std::string_view mod_name, std::string_view proc_name, int32_t line) {
  if (line == 0 && mod_name.empty() && proc_name.empty()) return;
  source_ += source_.find(kTrailMarker) == std::string::npos ? kTrailMarker : kStepMarker;
  source_ += FormatStep(mod_name, proc_name, line);
}

void CachedError::Clear() { *this = CachedError(); }

std::string CachedError::OrgSource() const {
  size_t at = source_.find(kTrailMarker);
  return at == std::string::npos ? source_ : source_.substr(0, at);
}

std::string CachedError::PropogationString() const {
  size_t at = source_.find(kTrailMarker);
  return at == std::string::npos ? std::string() : source_.substr(at + kTrailMarker.size());
}

std::vector<std::string> CachedError::PropogationArray() const {
  std::string trail = PropogationString();
  if (trail.empty()) return {};
  return text::Split(trail, kStepMarker);
}

int32_t CachedError::PropogationCount() const {
  return static_cast<int32_t>(PropogationArray().size());
}

std::string CachedError::Step(int32_t index) const {
  std::vector<std::string> steps = PropogationArray();
  if (index < 0 || index >= static_cast<int32_t>(steps.size())) {
    throw ZError(kErrSubscript, ZError::StandardDescription(kErrSubscript), "CachedError");
  }
  return steps[static_cast<size_t>(index)];
}

std::string CachedError::PropogatedMethod(int32_t index) const {
  return ParseStep(Step(index)).method;
}
std::string CachedError::PropogatedModule(int32_t index) const {
  return ParseStep(Step(index)).module;
}
int32_t CachedError::PropogatedLine(int32_t index) const { return ParseStep(Step(index)).line; }

std::string CachedError::InnermostMethod() const { return PropogatedMethod(0); }
std::string CachedError::InnermostModule() const { return PropogatedModule(0); }
int32_t CachedError::InnermostLine() const { return PropogatedLine(0); }
std::string CachedError::OutermostMethod() const {
  return PropogatedMethod(PropogationCount() - 1);
}
std::string CachedError::OutermostModule() const {
  return PropogatedModule(PropogationCount() - 1);
}
int32_t CachedError::OutermostLine() const { return PropogatedLine(PropogationCount() - 1); }

}  // namespace zintra
