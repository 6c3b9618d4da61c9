// Enterprise settings file: any bytes loaded, every entry the add-in reads looked up,
// one changed, one removed, and the saved text loaded again.
#include "fuzz/fuzz_input.h"
#include "src/settings/settings_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = zintra::fuzz::Text(data, size);
  zintra::SettingsFile file;
  file.Load(text);
  std::string value;
  // Names from the input itself ("<name>"), so the fuzzer reaches entries that exist.
  size_t open = text.find('<');
  size_t close = open == std::string::npos ? open : text.find('>', open);
  const std::string found =
      close == std::string::npos ? "" : text.substr(open + 1, close - open - 1);
  for (const std::string& name :
       {found, std::string("Software\\Brellow\\Zintra\\LogLevel"), std::string("x")}) {
    file.Get(name, &value);
  }
  file.Set(found, "1");
  file.Get(found, &value);
  if (value != "1") zintra::fuzz::Finding("a value set does not read back", found);
  file.Delete("Software\\Brellow\\Zintra\\LogLevel");
  zintra::SettingsFile again;
  again.Load(file.Contents());
  zintra::SettingsFile::InsertLinebreaks(text);
  return 0;
}
