// vCard reader: any bytes as a .vcf file.
#include "fuzz/fuzz_input.h"
#include "tools/zintra-sim/vcard_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zintra::fuzz::Expect(
      [&] { zintra::simtool::ReadVCards(zintra::fuzz::Text(data, size), "fuzz.vcf"); });
  return 0;
}
