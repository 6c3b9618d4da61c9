// ZError: the one exception type the system throws and catches, carrying what a
// VB run-time error carried. Platform ports throw it with the platform's own
// number (438 for a member an item kind lacks, a MAPI code for a missing message).
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace zintra {

class ZError : public std::exception {
 public:
  explicit ZError(int32_t number, std::string description = {}, std::string source = {},
                  std::string help_file = {}, int32_t help_context = 0, int32_t last_dll_error = 0);

  int32_t Number() const { return number_; }
  const std::string& Description() const { return description_; }
  const std::string& Source() const { return source_; }
  const std::string& HelpFile() const { return help_file_; }
  int32_t HelpContext() const { return help_context_; }
  int32_t LastDllError() const { return last_dll_error_; }

  const char* what() const noexcept override { return description_.c_str(); }

  // The run time's own text for the numbers the system raises; "" when unknown.
  static std::string StandardDescription(int32_t number);

 private:
  int32_t number_;
  std::string description_;
  std::string source_;
  std::string help_file_;
  int32_t help_context_;
  int32_t last_dll_error_;
};

// Error numbers the system tests for by value.
inline constexpr int32_t kErrInvalidCall = 5;
inline constexpr int32_t kErrOverflow = 6;
inline constexpr int32_t kErrSubscript = 9;
inline constexpr int32_t kErrTypeMismatch = 13;
inline constexpr int32_t kErrObjectNotSet = 91;
inline constexpr int32_t kErrNoSuchMember = 438;
inline constexpr int32_t kErrDuplicateKey = 457;

}  // namespace zintra
