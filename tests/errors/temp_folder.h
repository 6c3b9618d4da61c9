// A real temporary folder for tests whose component writes real files; removed with
// everything in it when the test ends.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace zintra::testing_support {

class TempFolder {
 public:
  TempFolder() {
    std::random_device rd;
    path_ = std::filesystem::temp_directory_path() /
            ("zintra-errors-" + std::to_string(rd()) + "-" + std::to_string(rd()));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string str() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace zintra::testing_support
