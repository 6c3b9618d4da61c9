// Outlook data file reader: any bytes as a .pst file. The reader opens files by name
// (libpff reads them itself), so each input is written to a scratch file first.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "fuzz/fuzz_input.h"
#include "tools/zintra-sim/outlook_store_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string file = (std::filesystem::temp_directory_path() /
                                   ("zintra-fuzz-" + std::to_string(getpid()) + ".pst"))
                                      .string();
  std::ofstream(file, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  zintra::fuzz::Expect([&] { zintra::simtool::ReadOutlookStore(file); });
  return 0;
}
