// .reg import: any bytes as a .reg file applied to an empty registry. A rejection must
// leave the registry as it was; an accepted file must export and import again.
#include "fuzz/fuzz_input.h"
#include "sim/registry/reg_file.h"

namespace {

using zintra::sim::MemoryRegistry;
using zintra::sim::RegFile;
using zintra::sim::RegFileError;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  MemoryRegistry registry;
  try {
    RegFile::Import(registry, zintra::fuzz::Text(data, size), "fuzz.reg");
  } catch (const RegFileError& e) {
    if (std::string(e.what()).size() > zintra::fuzz::kMaxMessage) {
      zintra::fuzz::Finding("a rejection that echoes the input", e.what());
    }
    if (!registry.SubKeys(zintra::kHKeyCurrentUser, "").empty() ||
        !registry.SubKeys(zintra::kHKeyLocalMachine, "").empty()) {
      zintra::fuzz::Finding("a rejected file changed the registry", e.what());
    }
    return 0;
  } catch (const std::exception& e) {
    zintra::fuzz::Finding("an exception that is not RegFileError", e.what());
  }
  for (zintra::HKey hive : {zintra::kHKeyCurrentUser, zintra::kHKeyLocalMachine}) {
    for (const std::string& key : registry.SubKeys(hive, "")) {
      std::string exported = RegFile::Export(registry, hive, key);
      MemoryRegistry again;
      try {
        RegFile::Import(again, exported, "exported.reg");
      } catch (const std::exception& e) {
        zintra::fuzz::Finding("an exported key does not import", e.what());
      }
    }
  }
  return 0;
}
