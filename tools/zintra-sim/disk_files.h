// DiskFiles: the simulated disk in a scenario. "files" places files and folders before
// Outlook starts (an enterprise settings file, a letter template, a file that is
// read-only or cannot be opened); the "file" expectation checks one afterwards:
//   {"file": path, "content": text}      the file holds exactly this text
//   {"file": path, "contains": text}     its text contains this (with "present": false:
//                                        does not contain it)
//   {"file": path, "exists": false}      there is no such file
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sim/files/memory_file_system.h"
#include "tools/zintra-sim/json_source.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

std::vector<FileSpec> ReadFiles(const JsonNode& n);
void PlaceFiles(sim::MemoryFileSystem& disk, const std::vector<FileSpec>& files);

ExpectSpec ReadFileExpectation(const JsonNode& n);
// The contents of every file the expectations name (nullopt: no such file).
std::map<std::string, std::optional<std::string>> FilesNamed(
    const sim::MemoryFileSystem& disk, const std::vector<ExpectSpec>& expectations);
// met, and what was found.
std::pair<bool, std::string> CheckFile(const ExpectSpec& e,
                                       const std::optional<std::string>& found);

}  // namespace zintra::simtool
