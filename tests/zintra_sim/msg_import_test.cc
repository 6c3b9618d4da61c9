// Outlook .msg items, built here byte by byte as a compound file (512-byte sectors,
// small streams in the mini stream) holding MAPI property streams with the tags Outlook
// declares, then imported; and damaged files.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/msg_reader.h"
#include "tools/zintra-sim/runner.h"

namespace zintra::simtool {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

void Put32(std::string& s, uint32_t v) {
  for (int i = 0; i < 4; ++i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
}
void Put64(std::string& s, uint64_t v) {
  Put32(s, static_cast<uint32_t>(v));
  Put32(s, static_cast<uint32_t>(v >> 32));
}
std::string Utf16(const std::u16string& text) {
  std::string out;
  for (char16_t c : text) {
    out += static_cast<char>(c & 0xFF);
    out += static_cast<char>(c >> 8);
  }
  return out;
}
std::string Hex8(uint32_t v) {
  char b[9];
  std::snprintf(b, sizeof b, "%08X", v);
  return b;
}

// A storage or stream of the compound file to write.
struct Node {
  std::u16string name;
  bool storage = false;
  std::string bytes;
  std::vector<Node> children;
};

// Writes a version 3 compound file: allocation table sectors first, then the directory,
// the mini table, the mini stream and the large streams, each a chain of sectors.
std::string WriteCompoundFile(const Node& root) {
  constexpr uint32_t kEnd = 0xFFFFFFFE, kFree = 0xFFFFFFFF, kFatSector = 0xFFFFFFFD;
  struct Flat {
    const Node* node;
    uint32_t left = kFree, right = kFree, child = kFree, start = kEnd;
  };
  std::vector<Flat> flat{{&root}};
  // Children of a storage hang from its child pointer as a chain of right siblings.
  std::vector<size_t> todo{0};
  while (!todo.empty()) {
    size_t at = todo.back();
    todo.pop_back();
    uint32_t previous = kFree;
    for (const Node& c : flat[at].node->children) {
      flat.push_back({&c});
      uint32_t id = static_cast<uint32_t>(flat.size() - 1);
      if (previous == kFree) {
        flat[at].child = id;
      } else {
        flat[previous].right = id;
      }
      previous = id;
      if (c.storage) todo.push_back(id);
    }
  }
  std::string mini;
  std::vector<uint32_t> mini_fat;
  std::vector<std::pair<size_t, std::string>> large;  // entry, bytes
  for (size_t i = 1; i < flat.size(); ++i) {
    const Node& n = *flat[i].node;
    if (n.storage || n.bytes.empty()) continue;
    if (n.bytes.size() >= 4096) {
      large.emplace_back(i, n.bytes);
      continue;
    }
    flat[i].start = static_cast<uint32_t>(mini.size() / 64);
    size_t count = (n.bytes.size() + 63) / 64;
    for (size_t k = 0; k < count; ++k) {
      mini_fat.push_back(k + 1 == count ? kEnd : static_cast<uint32_t>(mini.size() / 64 + k + 1));
    }
    mini += n.bytes;
    mini.resize(mini.size() + (64 - mini.size() % 64) % 64, '\0');
  }
  auto sectors = [](size_t bytes) { return static_cast<uint32_t>((bytes + 511) / 512); };
  uint32_t dir_n = sectors(flat.size() * 128), minifat_n = sectors(mini_fat.size() * 4),
           mini_n = sectors(mini.size()), large_n = 0;
  for (const auto& l : large) large_n += sectors(l.second.size());
  uint32_t rest = dir_n + minifat_n + mini_n + large_n, fat_n = 1;
  while (fat_n * 128 < rest + fat_n) ++fat_n;
  std::vector<uint32_t> fat(fat_n * 128, kFree);
  uint32_t next = 0;
  for (uint32_t i = 0; i < fat_n; ++i) fat[next++] = kFatSector;
  auto chain = [&](uint32_t count) {
    uint32_t first = count == 0 ? kEnd : next;
    for (uint32_t k = 0; k < count; ++k, ++next) fat[next] = k + 1 == count ? kEnd : next + 1;
    return first;
  };
  uint32_t dir_start = chain(dir_n), minifat_start = chain(minifat_n);
  flat[0].start = chain(mini_n);
  for (const auto& l : large) flat[l.first].start = chain(sectors(l.second.size()));

  std::string out("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
  out.append(16, '\0');
  out += std::string("\x3E\x00\x03\x00\xFE\xFF\x09\x00\x06\x00", 10);
  out.append(6, '\0');
  Put32(out, 0);  // directory sectors (version 3: 0)
  Put32(out, fat_n);
  Put32(out, dir_start);
  Put32(out, 0);
  Put32(out, 4096);
  Put32(out, mini_fat.empty() ? kEnd : minifat_start);
  Put32(out, minifat_n);
  Put32(out, kEnd);  // no extension sectors
  Put32(out, 0);
  for (uint32_t i = 0; i < 109; ++i) Put32(out, i < fat_n ? i : kFree);
  auto pad = [&] { out.resize(out.size() + (512 - out.size() % 512) % 512, '\0'); };
  for (uint32_t v : fat) Put32(out, v);
  for (size_t i = 0; i < flat.size(); ++i) {
    const Node& n = *flat[i].node;
    std::string e = Utf16(n.name);
    e.resize(64, '\0');
    uint16_t name_bytes = static_cast<uint16_t>((n.name.size() + 1) * 2);
    e += static_cast<char>(name_bytes & 0xFF);
    e += static_cast<char>(name_bytes >> 8);
    e += static_cast<char>(i == 0 ? 5 : n.storage ? 1 : 2);
    e += '\x01';  // black
    Put32(e, flat[i].left);
    Put32(e, flat[i].right);
    Put32(e, flat[i].child);
    e.append(16 + 4 + 16, '\0');  // class, state bits, times
    Put32(e, flat[i].start);
    Put64(e, i == 0 ? mini.size() : n.bytes.size());
    out += e;
  }
  pad();
  for (uint32_t v : mini_fat) Put32(out, v);
  pad();
  out += mini;
  pad();
  for (const auto& l : large) {
    out += l.second;
    pad();
  }
  return out;
}

// An item's storage: a property stream (header of `header` bytes) and value streams.
struct Props {
  size_t header = 8;
  std::string fixed;
  std::vector<Node> streams;

  Props& Long(uint16_t id, uint32_t v) {
    Put32(fixed, uint32_t{id} << 16 | 0x0003);
    Put32(fixed, 6);
    Put64(fixed, v);
    return *this;
  }
  Props& Time(uint16_t id, uint64_t filetime) {
    Put32(fixed, uint32_t{id} << 16 | 0x0040);
    Put32(fixed, 6);
    Put64(fixed, filetime);
    return *this;
  }
  Props& Stream(uint32_t tag, std::string bytes) {
    Put32(fixed, tag);
    Put32(fixed, 6);
    Put64(fixed, bytes.size());
    streams.push_back({u"__substg1.0_" + Ascii(Hex8(tag)), false, std::move(bytes), {}});
    return *this;
  }
  Props& Text(uint16_t id, const std::u16string& v) {
    return Stream(uint32_t{id} << 16 | 0x001F, Utf16(v) + std::string(2, '\0'));
  }
  Props& Text8(uint16_t id, const std::string& v) {
    return Stream(uint32_t{id} << 16 | 0x001E, v + '\0');
  }
  Props& Texts(uint16_t id, const std::vector<std::u16string>& values) {
    uint32_t tag = uint32_t{id} << 16 | 0x101F;
    std::string lengths;
    for (size_t i = 0; i < values.size(); ++i) {
      std::string v = Utf16(values[i]) + std::string(2, '\0');
      Put32(lengths, static_cast<uint32_t>(v.size()));
      streams.push_back(
          {u"__substg1.0_" + Ascii(Hex8(tag)) + u"-" + Ascii(Hex8(static_cast<uint32_t>(i))),
           false,
           v,
           {}});
    }
    return Stream(tag, lengths);
  }
  Node Storage(const std::u16string& name, std::vector<Node> more = {}) const {
    Node n{name, true, "", streams};
    n.children.push_back(
        {u"__properties_version1.0", false, std::string(header, '\0') + fixed, {}});
    for (Node& m : more) n.children.push_back(std::move(m));
    return n;
  }
  static std::u16string Ascii(const std::string& s) { return {s.begin(), s.end()}; }
};

// Named properties: the property set GUID stream, the entry stream and the name stream.
Node NameIds(const std::vector<std::string>& guids, const std::string& entries,
             const std::string& names) {
  std::string g;
  for (const std::string& x : guids) g += x;
  return Node{u"__nameid_version1.0",
              true,
              "",
              {{u"__substg1.0_00020102", false, g, {}},
               {u"__substg1.0_00030102", false, entries, {}},
               {u"__substg1.0_00040102", false, names, {}}}};
}

// 2026-01-05 09:00:00 UTC as a FILETIME: seconds since 1970 plus 1601..1970, in 100 ns.
constexpr uint64_t kJan5 = (1767603600ull + 11644473600ull) * 10000000ull;

std::string MailMsg(uint32_t sensitivity = 2) {  // private unless told
  Props item;
  item.header = 32;
  item.Text(0x001A, u"IPM.Note")
      .Text(0x0037, u"Quarterly figures \u20AC")
      .Text(0x1000, u"Hello Ann,\r\nsee attached.")
      .Text(0x0C1A, u"Tom Baker")
      .Text(0x0C1E, u"EX")
      .Text(0x0C1F, u"/O=CONTOSO/OU=EXCHANGE ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER")
      .Long(0x0036, sensitivity)
      .Time(0x0039, kJan5)
      .Time(0x0E06, kJan5 + 600ull * 10000000ull);
  // Categories: the named property "Keywords" of PS_PUBLIC_STRINGS, here 0x8000.
  item.Texts(0x8000, {u"Customers", u"Key Accounts"});
  std::string entries, names;
  Put32(entries, 0);                     // offset of the name in the name stream
  Put32(entries, 0 << 16 | 2 << 1 | 1);  // index 0, PS_PUBLIC_STRINGS, named by string
  Put32(names, 16);
  names += Utf16(u"Keywords");
  Props ann;
  ann.Long(0x0C15, 1)
      .Text(0x3001, u"Ann Lee")
      .Text(0x3002, u"SMTP")
      .Text(0x3003, u"ann@fabrikam.com");
  Props jane;  // an Exchange recipient whose SMTP address the item carries
  jane.Long(0x0C15, 2)
      .Text(0x3001, u"Jane Doe")
      .Text(0x3002, u"EX")
      .Text(0x3003, u"/O=CONTOSO/OU=EXCHANGE ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=JDOE")
      .Text(0x39FE, u"jane.doe@contoso.com");
  Props pdf;
  pdf.Text(0x3707, u"q3 figures.pdf").Text(0x370E, u"application/pdf").Long(0x3705, 1);
  pdf.Stream(0x37010102, std::string(5000, 'P'));  // large enough for regular sectors
  Props forwarded;
  forwarded.Text(0x3001, u"Re: budget").Long(0x3705, 5).Long(0x0E20, 2345);
  Props inner;
  inner.header = 24;
  inner.Text(0x001A, u"IPM.Note").Text(0x0037, u"Re: budget");
  return WriteCompoundFile(item.Storage(
      u"Root Entry",
      {ann.Storage(u"__recip_version1.0_#00000000"), jane.Storage(u"__recip_version1.0_#00000001"),
       pdf.Storage(u"__attach_version1.0_#00000000"),
       forwarded.Storage(u"__attach_version1.0_#00000001",
                         {inner.Storage(u"__substg1.0_3701000D")}),
       NameIds({}, entries, names)}));
}

std::string ContactMsg() {
  // PSETID_Address {00062004-0000-0000-C000-000000000046} as stored, first in the GUID
  // stream (index 3); Email1..3 addresses are its numbers 0x8083, 0x8093, 0x80A3.
  std::string address_set("\x04\x20\x06\x00\x00\x00\x00\x00\xC0\x00\x00\x00\x00\x00\x00\x46", 16);
  std::string entries;
  uint32_t index = 0;
  auto lid = [&](uint32_t number) {
    Put32(entries, number);
    Put32(entries, index++ << 16 | 3 << 1);
    return static_cast<uint16_t>(0x8000 + index - 1);
  };
  Props item;
  item.header = 32;
  item.Text(0x001A, u"IPM.Contact")
      .Text(0x3001, u"Ann Lee")
      .Text(0x3A16, u"Fabrikam")
      .Text(lid(0x8083), u"ann@fabrikam.com")
      .Text(lid(0x8092), u"EX")
      .Text(lid(0x8093), u"/O=FABRIKAM/OU=SITE/CN=RECIPIENTS/CN=ALEE")
      .Text(lid(0x8094), u"ann.lee@fabrikam.com")
      .Text8(lid(0x80A3), "ann@home.example")
      .Long(0x0036, 3);
  return WriteCompoundFile(item.Storage(u"Root Entry", {NameIds({address_set}, entries, "")}));
}

std::string Write(const std::string& name, const std::string& bytes) {
  auto dir = std::filesystem::path(::testing::TempDir()) / "msg-import";
  std::filesystem::create_directories(dir);
  std::ofstream(dir / name, std::ios::binary) << bytes;
  return (dir / name).string();
}

TEST(MsgImportTest, ReadsAMailWithExchangeAndSmtpPeopleAndAttachments) {
  ItemSpec m = ReadMsg(MailMsg(), "mail.msg");
  EXPECT_EQ(m.item_class, ItemClass::kMail);
  EXPECT_EQ(m.subject, "Quarterly figures €");
  EXPECT_EQ(m.body, "Hello Ann,\r\nsee attached.");
  ASSERT_TRUE(m.from.has_value());
  EXPECT_EQ(m.from->name, "Tom Baker");
  EXPECT_EQ(m.from->exchange,
            "/O=CONTOSO/OU=EXCHANGE ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER");
  EXPECT_EQ(m.from->smtp, "");  // only the directory knows it
  ASSERT_EQ(m.to.size(), 1u);
  EXPECT_EQ(m.to[0], (PersonSpec{"Ann Lee", "ann@fabrikam.com", ""}));
  ASSERT_EQ(m.cc.size(), 1u);
  EXPECT_EQ(m.cc[0].smtp, "jane.doe@contoso.com");
  EXPECT_EQ(m.cc[0].exchange, "/O=CONTOSO/OU=EXCHANGE ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=JDOE");
  EXPECT_EQ(FormatIsoTime(m.time), "2026-01-05T09:00:00");  // sent
  EXPECT_EQ(m.sensitivity, kOlPrivate);
  EXPECT_EQ(m.categories, "Customers, Key Accounts");
  EXPECT_THAT(m.attachments, ElementsAre(AttachmentSpec{"q3 figures.pdf", "application/pdf", 5000},
                                         AttachmentSpec{"Re: budget", "message/rfc822", 2345}));
}

TEST(MsgImportTest, ReadsAContactsThreeAddresses) {
  ItemSpec c = ReadMsg(ContactMsg(), "ann.msg");
  EXPECT_EQ(c.item_class, ItemClass::kContact);
  EXPECT_EQ(c.full_name, "Ann Lee");
  EXPECT_EQ(c.company, "Fabrikam");
  // The Exchange address is given in the SMTP form Outlook kept with it.
  EXPECT_THAT(c.emails,
              ElementsAre("ann@fabrikam.com", "ann.lee@fabrikam.com", "ann@home.example"));
  EXPECT_EQ(c.sensitivity, kOlConfidential);
}

TEST(MsgImportTest, ImportFilesMailAndContactsAndKnowsExchangePeople) {
  std::string mail = Write("mail.msg", MailMsg());
  std::string contact = Write("contact.msg", ContactMsg());
  ImportResult r = Import({mail, contact}, PersonSpec{"Ann Lee", "ann@fabrikam.com", ""});
  EXPECT_EQ(r.contacts, 1);
  EXPECT_EQ(r.received, 1);
  // Jane's Exchange address resolves through the directory; Tom's stays as given.
  EXPECT_THAT(r.scenario.profile.directory,
              ElementsAre(PersonSpec{"Jane Doe", "jane.doe@contoso.com",
                                     "/O=CONTOSO/OU=EXCHANGE ADMINISTRATIVE "
                                     "GROUP/CN=RECIPIENTS/CN=JDOE"}));
}

TEST(MsgImportTest, DamagedFilesFailByName) {
  std::string good = MailMsg();
  std::string looped = good;
  // The first allocation table entry after the table's own sector points to itself.
  looped[512 + 4] = 1;
  looped[512 + 5] = looped[512 + 6] = looped[512 + 7] = 0;
  std::string cases[] = {
      good.substr(0, 700),  // cut short
      good.substr(0, 512),  // header only
      looped,               // a chain that loops
      std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + std::string(600, '\xFF'),
  };
  for (const std::string& bytes : cases) {
    std::string file = Write("bad.msg", bytes);
    try {
      Import({file}, std::nullopt);
      ADD_FAILURE() << "accepted a damaged file of " << bytes.size() << " bytes";
    } catch (const InputError& e) {
      EXPECT_EQ(e.file(), file);
      EXPECT_THAT(e.what(), HasSubstr("damaged"));
    }
  }
  // A compound file that is no Outlook item (a Word document, say).
  Node doc{u"Root Entry", true, "", {{u"WordDocument", false, "text", {}}}};
  EXPECT_THROW(ReadMsg(WriteCompoundFile(doc), "letter.doc"), InputError);
}

// A reply from Ann to Tom, whom it names by his Exchange address and his SMTP address.
std::string ReplyMsg() {
  Props item;
  item.header = 32;
  item.Text(0x001A, u"IPM.Note")
      .Text(0x0037, u"RE: Quarterly figures")
      .Text(0x0C1A, u"Ann Lee")
      .Text(0x0C1E, u"SMTP")
      .Text(0x0C1F, u"ann@fabrikam.com")
      .Time(0x0039, kJan5 + 3600ull * 10000000ull);
  Props tom;
  tom.Long(0x0C15, 1)
      .Text(0x3001, u"Tom Baker")
      .Text(0x3002, u"EX")
      .Text(0x3003, u"/O=CONTOSO/OU=EXCHANGE ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER")
      .Text(0x39FE, u"tom.baker@contoso.com");
  return WriteCompoundFile(item.Storage(
      u"Root Entry", {tom.Storage(u"__recip_version1.0_#00000000"), NameIds({}, "", "")}));
}

// Tom's mail gives him by his Exchange address alone; another item gives his SMTP
// address, so the directory resolves him and the add-in finds his tracked contact.
TEST(MsgImportTest, AnExchangeOnlySenderResolvesThroughTheDirectory) {
  auto dir = std::filesystem::path(::testing::TempDir()) / "msg-exchange";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  std::ofstream(dir / "mail.msg", std::ios::binary) << MailMsg(0);
  std::ofstream(dir / "reply.msg", std::ios::binary) << ReplyMsg();
  std::ofstream(dir / "tom.vcf", std::ios::binary)
      << "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Tom Baker\r\nEMAIL:tom.baker@contoso.com\r\n"
         "END:VCARD\r\n";
  ImportResult r = Import({dir.string()}, PersonSpec{"Ann Lee", "ann@fabrikam.com", ""});
  EXPECT_EQ(r.received, 1);
  EXPECT_EQ(r.sent, 1);
  EXPECT_THAT(r.scenario.profile.directory,
              ::testing::Contains(PersonSpec{
                  "Tom Baker", "tom.baker@contoso.com",
                  "/O=CONTOSO/OU=EXCHANGE ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER"}));
  RunOptions options;
  options.quiet = true;
  std::ostringstream out;
  RunResult run = RunScenario(r.scenario, options, out);
  bool found = false;
  for (const WhyRow& row : run.why) {
    if (row.subject != "Quarterly figures \u20AC" || row.outcome == "copy") continue;
    found = true;
    EXPECT_EQ(row.outcome, "logged") << row.reason;
    EXPECT_THAT(row.contacts, ElementsAre("Tom Baker (tom.baker@contoso.com)"));
  }
  EXPECT_TRUE(found);
  std::filesystem::remove_all(dir);
}

// Every byte of a good item changed in turn: the reader reads it or throws InputError;
// it never reads outside the file, loops or fails another way.
TEST(MsgImportTest, ChangedBytesGiveAnItemOrAnInputError) {
  const std::string good = MailMsg();
  int rejected = 0;
  for (size_t at = 0; at < good.size(); at += 3) {
    for (char value : {'\x00', '\xFF', '\x7F'}) {
      std::string bytes = good;
      bytes[at] = value;
      try {
        ReadMsg(bytes, "changed.msg");
      } catch (const InputError&) {
        ++rejected;
      } catch (const std::exception& e) {
        ADD_FAILURE() << "byte " << at << " = " << int(value) << ": " << e.what();
      }
    }
  }
  EXPECT_GT(rejected, 0);
}

}  // namespace
}  // namespace zintra::simtool
