// HostRecord: what the simulated host saw of a run besides the profile and the log
// lines: every message box, optional message and message form shown to the user, in
// the order shown, and every row of the add-in's error log with all its columns. The
// expectations check it; the results carry it (messages.json, errors.json).
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "hosts/errorlog/sqlite_error_log.h"

namespace zintra::sim {
class SimOutlook;
}

namespace zintra::simtool {

struct ShownMessage {
  std::string kind;  // "box" (a message box), "optional" (with "Do not show this message
                     // again"), "form" (the error message form)
  std::string text;
  std::string title;
  std::string buttons;  // "ok", "ok-cancel", "abort-retry-ignore", "yes-no-cancel", "yes-no",
                        // "retry-cancel"
  std::string icon;     // "critical", "question", "exclamation", "information" or ""
  std::string answer;   // the button pressed ("ok", "yes", ...), "close" for the close box
  bool ticked = false;  // optional: the check box as the user left it
  int64_t order = 0;
  int32_t dialog = 0;  // optional: the dialog number the add-in showed it under
};

struct HostRecord {
  std::vector<ShownMessage> messages;        // in the order shown
  std::vector<hosts::ErrorLogRow> errors;    // every error-log row, oldest first
  std::vector<std::string> error_log_paths;  // each log's path as the add-in names it
  // The files the expectations name, as the simulated disk holds them (nullopt: absent).
  std::map<std::string, std::optional<std::string>> files;
};

HostRecord RecordHost(const sim::SimOutlook& outlook);
// A message's field or an error row's column by the name expectations use ("" unknown).
std::string MessageField(const ShownMessage& m, const std::string& field);
std::string ErrorColumn(const hosts::ErrorLogRow& row, const std::string& column);
// The names ErrorColumn knows.
const std::vector<std::string>& ErrorColumnNames();
nlohmann::ordered_json MessagesJson(const HostRecord& record);
nlohmann::ordered_json ErrorsJson(const HostRecord& record);

}  // namespace zintra::simtool
