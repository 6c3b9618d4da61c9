// OutputFiles: the files a command produces, written all or nothing. Each file is
// first written beside its target under a temporary name; only when every one is
// complete are they renamed into place, so an error (a full disk, a folder that cannot
// be made) leaves no partial output. Throws std::runtime_error naming the path.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zintra::simtool {

class OutputFiles {
 public:
  void Add(std::string path, std::string content) {
    files_.emplace_back(std::move(path), std::move(content));
  }
  void Commit();

 private:
  std::vector<std::pair<std::string, std::string>> files_;
};

}  // namespace zintra::simtool
