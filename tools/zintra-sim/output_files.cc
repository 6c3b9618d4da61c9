#include "tools/zintra-sim/output_files.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace zintra::simtool {

namespace fs = std::filesystem;

void OutputFiles::Commit() {
  std::vector<fs::path> temps;
  auto discard = [&] {
    std::error_code ec;
    for (const fs::path& t : temps) fs::remove(t, ec);
  };
  try {
    for (const auto& [path, content] : files_) {
      fs::path target(path);
      if (target.has_parent_path()) fs::create_directories(target.parent_path());
      fs::path temp = target;
      temp += ".partial";
      temps.push_back(temp);
      std::ofstream out(temp, std::ios::binary | std::ios::trunc);
      out.write(content.data(), static_cast<std::streamsize>(content.size()));
      out.close();
      if (!out) throw std::runtime_error(temp.string() + ": cannot write the file");
    }
    for (size_t i = 0; i < files_.size(); ++i) fs::rename(temps[i], files_[i].first);
  } catch (const fs::filesystem_error& e) {
    discard();
    throw std::runtime_error(e.path1().string() + ": " + e.code().message());
  } catch (...) {
    discard();
    throw;
  }
  files_.clear();
}

}  // namespace zintra::simtool
