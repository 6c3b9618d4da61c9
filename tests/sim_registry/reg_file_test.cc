#include "sim/registry/reg_file.h"

#include <gtest/gtest.h>

#include "sim/registry/utf16.h"
#include "src/core/text.h"
#include "tests/support/error_of.h"

namespace zintra::sim {
namespace {

constexpr HKey kCU = kHKeyCurrentUser;
constexpr HKey kLM = kHKeyLocalMachine;

// As regedit saves it: UTF-16LE with a byte-order mark, CR LF line ends.
std::string AsRegedit(const std::string& text) { return "\xFF\xFE" + Utf8ToUtf16Le(text); }

const char kFixture[] =
    "Windows Registry Editor Version 5.00\r\n"
    "\r\n"
    "; settings for the sales team\r\n"
    "[HKEY_CURRENT_USER\\Software\\Brellow\\Zintra]\r\n"
    "\"RunJobsAsync\"=dword:00000000\r\n"
    "\"TrackedContactCategories\"=\"Clients \\\"A\\\"; Zoë\"\r\n"
    "@=\"default\"\r\n"
    "\"Blob\"=hex:01,02,\\\r\n"
    "  ff\r\n"
    "\"Expand\"=hex(2):25,00,54,00,4d,00,50,00,25,00,00,00\r\n"
    "\r\n"
    "[HKEY_CURRENT_USER\\Software\\Brellow\\Zintra\\Logging]\r\n"
    "\"LogPath\"=\"C:\\\\Logs\\\\Zintra\"\r\n"
    "\r\n"
    "[HKEY_LOCAL_MACHINE\\Software\\Policies\\Brellow\\Zintra]\r\n"
    "\"AllowLocalOverride\"=dword:00000001\r\n";

TEST(RegFileTest, ImportsWhatRegeditWrites) {
  for (const std::string& bytes : {AsRegedit(kFixture), std::string(kFixture)}) {
    MemoryRegistry reg;
    RegFile::Import(reg, bytes, "sales.reg");
    const std::string key = "Software\\Brellow\\Zintra";
    EXPECT_EQ(reg.GetValue(kCU, key, "RunJobsAsync")->AsDword(), 0u);
    EXPECT_EQ(reg.GetValue(kCU, key, "TrackedContactCategories")->AsString(), "Clients \"A\"; Zoë");
    EXPECT_EQ(reg.GetValue(kCU, key, "")->AsString(), "default");
    EXPECT_EQ(reg.GetValue(kCU, key, "Blob")->data, (std::vector<uint8_t>{1, 2, 0xFF}));
    EXPECT_EQ(reg.GetValue(kCU, key, "Expand")->AsString(), "%TMP%");
    EXPECT_EQ(reg.GetValue(kCU, key, "Expand")->type, kRegExpandSz);
    EXPECT_EQ(reg.GetValue(kCU, key + "\\Logging", "LogPath")->AsString(), "C:\\Logs\\Zintra");
    EXPECT_EQ(
        reg.GetValue(kLM, "Software\\Policies\\Brellow\\Zintra", "AllowLocalOverride")->AsDword(),
        1u);
  }
}

TEST(RegFileTest, DeletionsRemoveKeysAndValues) {
  MemoryRegistry reg;
  RegFile::Import(reg, kFixture, "a.reg");
  RegFile::Import(reg,
                  "REGEDIT4\n\n[-HKEY_CURRENT_USER\\Software\\Brellow\\Zintra\\Logging]\n"
                  "[HKCU\\Software\\Brellow\\Zintra]\n\"runjobsasync\"=-\n",
                  "b.reg");
  EXPECT_FALSE(reg.HasKey(kCU, "Software\\Brellow\\Zintra\\Logging"));
  EXPECT_FALSE(reg.GetValue(kCU, "Software\\Brellow\\Zintra", "RunJobsAsync"));
  EXPECT_TRUE(reg.GetValue(kCU, "Software\\Brellow\\Zintra", "Blob"));
}

TEST(RegFileTest, ExportThenImportRebuildsTheSameTree) {
  MemoryRegistry reg;
  RegFile::Import(reg, kFixture, "a.reg");
  reg.PutValue(kCU, "Software\\Brellow\\Zintra\\Big",
               RegistryValue{"bin", kRegBinary, std::vector<uint8_t>(100, 0xAB)});
  for (RegEncoding encoding : {RegEncoding::kUtf16, RegEncoding::kUtf8}) {
    std::string text = RegFile::Export(reg, kCU, "software\\brellow", encoding);
    MemoryRegistry copy;
    RegFile::Import(copy, text, "export.reg");
    EXPECT_EQ(RegFile::Export(copy, kCU, "Software\\Brellow", encoding), text);
    EXPECT_EQ(copy.GetValue(kCU, "Software\\Brellow\\Zintra\\Big", "bin")->data.size(), 100u);
  }
  std::string text =
      RegFile::Export(reg, kCU, "Software\\Brellow\\Zintra\\Logging", RegEncoding::kUtf8);
  EXPECT_EQ(text,
            "Windows Registry Editor Version 5.00\r\n\r\n"
            "[HKEY_CURRENT_USER\\Software\\Brellow\\Zintra\\Logging]\r\n"
            "\"LogPath\"=\"C:\\\\Logs\\\\Zintra\"\r\n\r\n");
  // Long hex data is wrapped as regedit wraps it, no line past 80 characters.
  std::string big = RegFile::Export(reg, kCU, "Software\\Brellow\\Zintra\\Big", RegEncoding::kUtf8);
  EXPECT_NE(big.find("ab,\\\r\n  ab"), std::string::npos);
  for (const std::string& line : text::Split(big, "\r\n")) EXPECT_LE(line.size(), 80u);
}

// Text with a line break cannot stand between quotes on one line; it is written as
// hex(1) bytes, as regedit writes a string it cannot quote (UTF-16LE in a version 5
// file, the bytes themselves in REGEDIT4), and reads back the same.
TEST(RegFileTest, TextWithALineBreakExportsAsBytes) {
  MemoryRegistry reg;
  const std::string text = "two\r\nlines";
  reg.SetString(kCU, "Software\\X", "note", text);
  std::string exported = RegFile::Export(reg, kCU, "Software\\X", RegEncoding::kUtf8);
  EXPECT_NE(exported.find("\"note\"=hex(1):74,00,77,00,6f,00,0d,00,0a,00,6c,00"), std::string::npos)
      << exported;
  MemoryRegistry copy;
  RegFile::Import(copy, exported, "x.reg");
  EXPECT_EQ(copy.GetValue(kCU, "Software\\X", "note")->AsString(), text);
  RegFile::Import(copy,
                  "REGEDIT4\r\n[HKEY_CURRENT_USER\\Software\\Y]\r\n\"n\"=hex(1):61,0d,0a,62,00\r\n",
                  "y.reg");
  EXPECT_EQ(copy.GetValue(kCU, "Software\\Y", "n")->AsString(), "a\r\nb");
}

struct BadFile {
  const char* body;
  int line;
  const char* problem;
};

void PrintTo(const BadFile& bad, std::ostream* os) { *os << bad.body; }

class RegFileErrorTest : public ::testing::TestWithParam<BadFile> {};

TEST_P(RegFileErrorTest, NamesTheLineAndChangesNothing) {
  MemoryRegistry reg;
  reg.SetDword(kCU, "Software\\Keep", "v", 1);
  const BadFile& bad = GetParam();
  std::string text = std::string("Windows Registry Editor Version 5.00\r\n\r\n") +
                     "[HKEY_CURRENT_USER\\Software\\New]\r\n\"a\"=dword:00000001\r\n" + bad.body;
  std::optional<RegFileError> e =
      Raised<RegFileError>([&] { RegFile::Import(reg, AsRegedit(text), "team.reg"); });
  ASSERT_TRUE(e) << "accepted: " << bad.body;
  EXPECT_EQ(e->line(), bad.line);
  EXPECT_NE(std::string(e->what()).find("team.reg:" + std::to_string(bad.line) + ": "),
            std::string::npos);
  EXPECT_NE(std::string(e->what()).find(bad.problem), std::string::npos) << e->what();
  EXPECT_FALSE(reg.HasKey(kCU, "Software\\New")) << "half imported";
  EXPECT_EQ(reg.GetValue(kCU, "Software\\Keep", "v")->AsDword(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Syntax, RegFileErrorTest,
    ::testing::Values(
        BadFile{"\"b\"=dword:1234567890\r\n", 5, "dword"},
        BadFile{"\"b\"=dword:xyz\r\n", 5, "dword"}, BadFile{"\"b\"=\"open\r\n", 5, "closing quote"},
        BadFile{"\"b\"=\"C:\\Temp\"\r\n", 5, "backslash"},
        BadFile{"\r\n[HKEY_CURRENT_USER\\Software\\X\r\n", 6, "']'"},
        BadFile{"[HKEY_CLASSES_ROOT\\.txt]\r\n", 5, "unknown hive"},
        BadFile{"\"b\"=hex:01,2g\r\n", 5, "two-digit"},
        BadFile{"\"b\"=hex:01,\\\r\n  02,\\\r\n", 5, "continued hex data"},
        BadFile{"\"b\" dword:1\r\n", 5, "'='"}, BadFile{"\"b\"=42\r\n", 5, "value data"},
        BadFile{"garbage\r\n", 5, "not a key"},
        BadFile{"[-HKEY_CURRENT_USER\\Software\\Gone]\r\n\"c\"=\"x\"\r\n", 6, "being deleted"},
        // A value type is a DWORD; more digits are no type at all, not a reader fault.
        BadFile{"\"b\"=hex(100000000):00\r\n", 5, "unknown value type"},
        BadFile{"\"b\"=hex(ffffffffffffffffffffffff):00\r\n", 5, "unknown value type"}));

// Files far larger than a person writes: a value continued over many lines and a key
// of many values import in linear time (ctest's time limit stops a quadratic reader).
TEST(RegFileTest, LargeFilesImport) {
  const int kLines = 100000;
  std::string text = "REGEDIT4\r\n[HKEY_CURRENT_USER\\Software\\Big]\r\n\"blob\"=hex:\\\r\n";
  for (int i = 0; i < kLines; ++i) text += "  00,01,02,03,04,05,06,07,\\\r\n";
  text += "  ff\r\n";
  for (int i = 0; i < kLines; ++i) {
    text += "\"v" + std::to_string(i) + "\"=dword:" + std::to_string(i % 10) + "\r\n";
  }
  text += "\"V0\"=dword:00000009\r\n";  // names are case-insensitive: this replaces v0
  MemoryRegistry reg;
  RegFile::Import(reg, text, "big.reg");
  EXPECT_EQ(reg.GetValue(kCU, "Software\\Big", "blob")->data.size(), kLines * 8u + 1);
  EXPECT_EQ(reg.GetValue(kCU, "Software\\Big", "v77777")->AsDword(), 7u);
  EXPECT_EQ(reg.GetValue(kCU, "Software\\Big", "v0")->AsDword(), 9u);
  EXPECT_EQ(reg.Values(kCU, "Software\\Big").size(), kLines + 1u);
  EXPECT_TRUE(reg.RemoveValue(kCU, "Software\\Big", "V5"));
  EXPECT_FALSE(reg.GetValue(kCU, "Software\\Big", "v5"));
  EXPECT_EQ(reg.GetValue(kCU, "Software\\Big", "v6")->AsDword(), 6u);
  // Enumeration keeps the file's order: blob, v0, ..., v4, v6, ...
  EXPECT_EQ(reg.Values(kCU, "Software\\Big")[6].name, "v6");
}

// Deleting nearly all of a key's many values ("name"=-) takes linear time too, and what
// is left keeps the file's order; deleting a value that is not there changes nothing.
TEST(RegFileTest, ManyDeletionsImport) {
  const int kValues = 100000;
  std::string text = "REGEDIT4\r\n[HKEY_CURRENT_USER\\Software\\Big]\r\n";
  for (int i = 0; i < kValues; ++i) {
    text += "\"v" + std::to_string(i) + "\"=dword:" + std::to_string(i % 10) + "\r\n";
  }
  for (int i = 0; i < kValues; ++i) {
    if (i % 25000 != 3) text += "\"V" + std::to_string(i) + "\"=-\r\n";
  }
  text += "\"never-written\"=-\r\n\"v3\"=-\r\n\"v3\"=dword:00000001\r\n";
  MemoryRegistry reg;
  RegFile::Import(reg, text, "big.reg");
  std::vector<std::string> left;
  for (const RegistryValue& value : reg.Values(kCU, "Software\\Big")) left.push_back(value.name);
  EXPECT_EQ(left, (std::vector<std::string>{"v25003", "v50003", "v75003", "v3"}));
  EXPECT_EQ(reg.GetValue(kCU, "Software\\Big", "v50003")->AsDword(), 3u);
  EXPECT_EQ(reg.GetValue(kCU, "Software\\Big", "v3")->AsDword(), 1u);
  EXPECT_FALSE(reg.GetValue(kCU, "Software\\Big", "v4"));
  // The port sees the same four values, by index, after the deletions.
  HKey key = 0;
  ASSERT_EQ(reg.OpenKey(kCU, "Software\\Big", kKeyRead, &key), kRegSuccess);
  std::string name;
  uint32_t size = 64;
  EXPECT_EQ(reg.EnumValue(key, 3, &name, &size, nullptr), kRegSuccess);
  EXPECT_EQ(name, "v3");
  size = 64;
  EXPECT_EQ(reg.EnumValue(key, 4, &name, &size, nullptr), kRegNoMoreItems);
  reg.CloseKey(key);
}

// Windows keeps a registry tree at most 512 levels deep; a deeper key in a file is an
// error in the file (and a tree 100,000 deep would exhaust the stack when freed).
TEST(RegFileTest, KeysDeeperThanWindowsAllowsAreRefused) {
  auto path = [](int levels) {
    std::string p = "k";
    for (int i = 1; i < levels; ++i) p += "\\k";
    return p;
  };
  auto file = [&](int levels) {
    return "REGEDIT4\r\n[HKEY_CURRENT_USER\\" + path(levels) + "]\r\n\"v\"=\"x\"\r\n";
  };
  MemoryRegistry reg;
  RegFile::Import(reg, file(512), "deep.reg");
  EXPECT_TRUE(reg.HasKey(kCU, path(512)));
  for (int levels : {513, 100000}) {
    try {
      RegFile::Import(reg, file(levels), "deep.reg");
      FAIL() << levels << " levels accepted";
    } catch (const RegFileError& e) {
      EXPECT_EQ(e.line(), 2);
      EXPECT_NE(std::string(e.what()).find("more than 512 levels deep"), std::string::npos);
    }
  }
}

TEST(RegFileTest, AFileMustStartWithItsHeader) {
  MemoryRegistry reg;
  EXPECT_THROW(RegFile::Import(reg, "[HKEY_CURRENT_USER\\Software\\X]\r\n", "x.reg"), RegFileError);
  EXPECT_THROW(RegFile::Import(reg, "", "x.reg"), RegFileError);
  EXPECT_THROW(RegFile::Import(reg, "REGEDIT4\r\n\"v\"=\"x\"\r\n", "x.reg"), RegFileError);
  EXPECT_THROW(RegFile::Export(reg, kCU, "Software\\Missing"), std::invalid_argument);
}

}  // namespace
}  // namespace zintra::sim
