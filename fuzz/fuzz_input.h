// What every fuzz target checks besides the sanitizers: a parser either accepts its
// input or rejects it with InputError, whose message must say something and must not
// echo the input back at length. Anything else stops the fuzzer as a finding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tools/zintra-sim/input_error.h"

namespace zintra::fuzz {

// The longest message a rejection may print (file name, line, field and problem).
inline constexpr size_t kMaxMessage = 2000;

inline std::string Text(const uint8_t* data, size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

[[noreturn]] inline void Finding(const char* what, const std::string& detail) {
  std::fprintf(stderr, "fuzz finding: %s: %.300s\n", what, detail.c_str());
  std::abort();
}

inline void CheckRejection(const simtool::InputError& e) {
  const std::string message = e.what();
  if (message.empty() || message.back() == ' ' || message.ends_with(": ")) {
    Finding("a rejection without a message", message);
  }
  if (message.size() > kMaxMessage) Finding("a rejection that echoes the input", message);
}

// Runs `parse`; InputError is checked, any other exception is a finding.
template <typename Parse>
void Expect(Parse parse) {
  try {
    parse();
  } catch (const simtool::InputError& e) {
    CheckRejection(e);
  } catch (const std::exception& e) {
    Finding("an exception that is not InputError", e.what());
  }
}

}  // namespace zintra::fuzz
