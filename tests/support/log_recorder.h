// LogRecorder: an error-log store that keeps every line the error handling writes, in
// order, for tests to read.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "src/host/error_log_store.h"

namespace zintra::testing_support {

// One line the error handling wrote.
struct LogLine {
  std::string kind;    // "Message", "Warning", "Error"
  std::string text;    // the message, or an error's description
  std::string trail;   // an error's propagation trail, innermost step first
  int32_t number = 0;  // an error's number

  // The innermost step of the trail, "Module.Method" without its line number.
  std::string Innermost() const {
    std::string step = trail.substr(0, trail.find("-->"));
    return step.substr(0, step.find('('));
  }
};

// The error log store: keeps every line, in order.
class LogRecorder : public ErrorLogStore, public ErrorLogFactory {
 public:
  std::shared_ptr<ErrorLogStore> CreateErrorLog() override {
    return std::shared_ptr<ErrorLogStore>(this, [](ErrorLogStore*) {});
  }
  void Open(const std::string& path, int32_t, bool) override { path_ = path; }
  void LogError(const std::string&, const std::string& description, const std::string&,
                int32_t number, const std::string&, const std::string&, const std::string&,
                const std::string&, const std::string& trail, const ErrorLogVersions&) override {
    lines.push_back({"Error", description, trail, number});
  }
  void LogMessage(const std::string&, const std::string& text, bool warning,
                  const ErrorLogVersions&) override {
    lines.push_back({warning ? "Warning" : "Message", text, {}});
  }
  void Relocate(const std::string& new_path) override { path_ = new_path; }
  std::string Path() const override { return path_; }

  std::vector<LogLine> lines;

 private:
  std::string path_;
};

}  // namespace zintra::testing_support
