// A scratch folder and the zintra-sim program run in-process with its output captured,
// for the tests of the command line.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "tools/zintra-sim/cli.h"

namespace zintra::simtool::testing_support {

class CliFixture : public ::testing::Test {
 protected:
  CliFixture() { std::filesystem::create_directories(dir_); }
  ~CliFixture() override {
    std::error_code ec;
    std::filesystem::remove_all(dir_, ec);
  }
  std::string Write(const std::string& name, const std::string& text) {
    std::filesystem::path p = dir_ / name;
    std::ofstream(p, std::ios::binary) << text;
    return p.string();
  }
  // Runs the program with `args` (its name added); its standard output and error are
  // kept in out_ and err_.
  int Run(std::vector<std::string> args) {
    args.insert(args.begin(), "zintra-sim");
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    int code = Main(static_cast<int>(argv.size()), argv.data());
    out_ = ::testing::internal::GetCapturedStdout();
    err_ = ::testing::internal::GetCapturedStderr();
    return code;
  }
  std::string Out() const { return (dir_ / "out").string(); }

  std::filesystem::path dir_ = std::filesystem::temp_directory_path() /
                               ("zintra-cli-" + std::to_string(std::random_device{}()));
  std::string out_, err_;
};

}  // namespace zintra::simtool::testing_support
