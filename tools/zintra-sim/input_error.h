// InputError: bad input given to the program (a scenario, vCard, mail or .reg file, a
// command-line argument). It names the file, the line (0 when unknown), the field
// and what was expected, and makes the program exit with code 2 before it writes
// anything. Input quoted in a message is cut to a short excerpt (Excerpt), and the
// whole message is bounded, so a bad file of megabytes is never echoed back.
#pragma once

#include <stdexcept>
#include <string>

namespace zintra::simtool {

inline constexpr int kExitBadInput = 2;

// `text` as quoted in a message: at most `max` bytes, cut at a character boundary and
// marked "..." when longer; control characters shown as "?" so one line stays one line.
inline std::string Excerpt(const std::string& text, size_t max = 60) {
  std::string out;
  size_t end = text.size() <= max ? text.size() : max;
  // Never cut a UTF-8 sequence in two: back up to the start of the character.
  while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
    --end;
  }
  for (size_t i = 0; i < end; ++i) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    out += c < 0x20 || c == 0x7F ? '?' : static_cast<char>(c);
  }
  if (end < text.size()) out += "...";
  return out;
}

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
    std::string s = file.empty() ? std::string("<input>") : Excerpt(file, 400);
    if (line > 0) s += ":" + std::to_string(line);
    s += ": ";
    // A field's pointer holds the file's own keys, which may be of any length.
    if (!field.empty()) s += Excerpt(field, 120) + ": ";
    return s + (problem.empty() ? std::string("bad input") : Excerpt(problem, 600));
  }
  std::string file_;
  int line_;
  std::string field_;
};

}  // namespace zintra::simtool
