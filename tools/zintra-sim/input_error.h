// InputError: bad input given to the program (a scenario, vCard, mail or .reg file, a
// command-line argument). It names the file, the line (0 when unknown), the field
// and what was expected, and makes the program exit with code 2 before it writes
// anything.
#pragma once

#include <stdexcept>
#include <string>

namespace zintra::simtool {

inline constexpr int kExitBadInput = 2;

class InputError : public std::runtime_error {
 public:
  InputError(std::string file, int line, std::string field, std::string problem)
      : std::runtime_error(Format(file, line, field, problem)),
        file_(std::move(file)),
        line_(line),
        field_(std::move(field)) {}
  const std::string& file() const { return file_; }
  int line() const { return line_; }
  const std::string& field() const { return field_; }

 private:
  static std::string Format(const std::string& file, int line, const std::string& field,
                            const std::string& problem) {
    std::string s = file.empty() ? std::string("<input>") : file;
    if (line > 0) s += ":" + std::to_string(line);
    s += ": ";
    if (!field.empty()) s += field + ": ";
    return s + problem;
  }
  std::string file_;
  int line_;
  std::string field_;
};

}  // namespace zintra::simtool
