// Outlook item reader: any bytes as a .msg file (a compound file of MAPI properties).
#include "fuzz/fuzz_input.h"
#include "tools/zintra-sim/msg_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zintra::fuzz::Expect(
      [&] { zintra::simtool::ReadMsg(zintra::fuzz::Text(data, size), "fuzz.msg"); });
  return 0;
}
