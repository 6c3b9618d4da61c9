// MIME reader: any bytes as an .eml file and as an mbox file.
#include "fuzz/fuzz_input.h"
#include "tools/zintra-sim/mime_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = zintra::fuzz::Text(data, size);
  zintra::fuzz::Expect([&] { zintra::simtool::ReadEml(text, "fuzz.eml"); });
  zintra::fuzz::Expect([&] { zintra::simtool::ReadMbox(text, "fuzz.mbox"); });
  return 0;
}
