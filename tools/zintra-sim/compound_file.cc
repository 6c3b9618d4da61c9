#include "tools/zintra-sim/compound_file.h"

#include <algorithm>
#include <string_view>

#include "src/core/text.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/text_decoding.h"

namespace zintra::simtool {

namespace {

constexpr std::string_view kMagic("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
constexpr uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr size_t kHeaderSize = 512;
constexpr size_t kEntrySize = 128;

}  // namespace

void CompoundFile::Fail(const std::string& what) const {
  throw InputError(file_, 0, "", "a damaged Outlook item (compound file): " + what);
}

uint32_t CompoundFile::U32(size_t at) const {
  if (at + 4 > bytes_.size()) Fail("it ends early");
  auto b = [&](size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(bytes_[i])); };
  return b(at) | b(at + 1) << 8 | b(at + 2) << 16 | b(at + 3) << 24;
}

CompoundFile::CompoundFile(std::string bytes, std::string file)
    : bytes_(std::move(bytes)), file_(std::move(file)) {
  if (bytes_.size() < kHeaderSize || bytes_.compare(0, kMagic.size(), kMagic) != 0) {
    Fail("no compound file header");
  }
  unsigned shift = static_cast<unsigned char>(bytes_[0x1E]);
  unsigned mini_shift = static_cast<unsigned char>(bytes_[0x20]);
  if ((shift != 9 && shift != 12) || mini_shift != 6) Fail("an unknown sector size");
  sector_size_ = size_t{1} << shift;
  mini_sector_size_ = size_t{1} << mini_shift;
  mini_cutoff_ = U32(0x38);
  size_t sectors = (bytes_.size() - sector_size_ + sector_size_ - 1) / sector_size_;
  auto sector_at = [&](uint32_t s) {
    if (s >= sectors) Fail("a sector number past the end of the file");
    return sector_size_ * (size_t{s} + 1);
  };
  // The sectors of the allocation table: 109 in the header, the rest in a chain of
  // extension sectors whose last entry points to the next.
  std::vector<uint32_t> fat_sectors;
  uint32_t fat_count = U32(0x2C);
  if (fat_count > sectors) Fail("more table sectors than the file holds");
  for (size_t i = 0; i < 109 && fat_sectors.size() < fat_count; ++i) {
    fat_sectors.push_back(U32(0x4C + 4 * i));
  }
  uint32_t next = U32(0x44);
  size_t per_sector = sector_size_ / 4;
  for (size_t guard = 0; fat_sectors.size() < fat_count; ++guard) {
    if (next >= kEndOfChain || guard > sectors) Fail("the table's extension chain breaks off");
    size_t at = sector_at(next);
    for (size_t i = 0; i + 1 < per_sector && fat_sectors.size() < fat_count; ++i) {
      fat_sectors.push_back(U32(at + 4 * i));
    }
    next = U32(at + 4 * (per_sector - 1));
  }
  for (uint32_t s : fat_sectors) {
    size_t at = sector_at(s);
    for (size_t i = 0; i < per_sector; ++i) fat_.push_back(U32(at + 4 * i));
  }
  // The directory: 128-byte entries in the chain from the header.
  std::string directory = ReadChain(U32(0x30), UINT64_MAX);
  for (size_t at = 0; at + kEntrySize <= directory.size(); at += kEntrySize) {
    std::string_view e(directory.data() + at, kEntrySize);
    auto u32 = [&](size_t i) {
      uint32_t v = 0;
      for (size_t k = 0; k < 4; ++k)
        v |= static_cast<uint32_t>(static_cast<unsigned char>(e[i + k])) << (8 * k);
      return v;
    };
    Entry entry;
    size_t name_bytes = static_cast<unsigned char>(e[0x40]) | static_cast<unsigned char>(e[0x41])
                                                                  << 8;
    name_bytes = std::min<size_t>(name_bytes, 64);
    if (name_bytes >= 2) name_bytes -= 2;  // the terminating zero
    entry.name = ConvertToUtf8(std::string(e.substr(0, name_bytes)), "UTF-16LE");
    unsigned type = static_cast<unsigned char>(e[0x42]);
    entry.storage = type == 1 || type == 5;
    entry.left = u32(0x44);
    entry.right = u32(0x48);
    entry.child = u32(0x4C);
    entry.start = u32(0x74);
    entry.size = u32(0x78) | (sector_size_ == 512 ? 0 : uint64_t{u32(0x7C)} << 32);
    if (type == 0) entry.name.clear();  // unused
    entries_.push_back(std::move(entry));
  }
  if (entries_.empty()) Fail("no directory");
  // The mini stream (the root entry's stream) and its table hold the small streams.
  uint32_t mini_fat_start = U32(0x3C);
  if (mini_fat_start < kEndOfChain) {
    std::string table = ReadChain(mini_fat_start, UINT64_MAX);
    for (size_t i = 0; i + 4 <= table.size(); i += 4) {
      uint32_t v = 0;
      for (size_t k = 0; k < 4; ++k)
        v |= static_cast<uint32_t>(static_cast<unsigned char>(table[i + k])) << (8 * k);
      mini_fat_.push_back(v);
    }
    mini_stream_ = ReadChain(entries_[0].start, entries_[0].size);
  }
}

std::vector<uint32_t> CompoundFile::Chain(const std::vector<uint32_t>& table, uint32_t start,
                                          size_t limit) const {
  std::vector<uint32_t> chain;
  for (uint32_t s = start; s != kEndOfChain && chain.size() < limit;) {
    if (s >= table.size()) Fail("a chain leaves its table");
    if (chain.size() > table.size()) Fail("a chain loops");
    chain.push_back(s);
    s = table[s];
  }
  return chain;
}

std::string CompoundFile::ReadChain(uint32_t start, uint64_t size) const {
  size_t limit =
      size == UINT64_MAX ? SIZE_MAX : static_cast<size_t>((size + sector_size_ - 1) / sector_size_);
  std::string out;
  for (uint32_t s : Chain(fat_, start, limit)) {
    size_t at = sector_size_ * (size_t{s} + 1);
    if (at + sector_size_ > bytes_.size()) {
      if (at >= bytes_.size()) Fail("a sector number past the end of the file");
      out.append(bytes_, at, bytes_.size() - at);  // a last sector cut short
    } else {
      out.append(bytes_, at, sector_size_);
    }
  }
  if (size != UINT64_MAX) {
    if (out.size() < size) Fail("a stream is longer than its sectors");
    out.resize(static_cast<size_t>(size));
  }
  return out;
}

std::vector<uint32_t> CompoundFile::Children(uint32_t storage) const {
  std::vector<uint32_t> out;
  std::vector<uint32_t> todo{entry(storage).child};
  while (!todo.empty()) {
    uint32_t id = todo.back();
    todo.pop_back();
    if (id == kNone) continue;
    if (id >= entries_.size()) Fail("a directory entry out of range");
    if (out.size() > entries_.size()) Fail("the directory loops");
    out.push_back(id);
    todo.push_back(entries_[id].left);
    todo.push_back(entries_[id].right);
  }
  return out;
}

std::optional<uint32_t> CompoundFile::Find(uint32_t storage, const std::string& name) const {
  for (uint32_t id : Children(storage)) {
    if (text::EqualsNoCase(entries_[id].name, name)) return id;
  }
  return std::nullopt;
}

std::string CompoundFile::Read(uint32_t stream) const {
  const Entry& e = entry(stream);
  if (e.storage) return "";
  if (e.size >= mini_cutoff_) return ReadChain(e.start, e.size);
  std::string out;
  size_t limit = static_cast<size_t>((e.size + mini_sector_size_ - 1) / mini_sector_size_);
  for (uint32_t s : Chain(mini_fat_, e.start, limit)) {
    size_t at = mini_sector_size_ * s;
    if (at + mini_sector_size_ > mini_stream_.size()) Fail("a small stream leaves the mini stream");
    out.append(mini_stream_, at, mini_sector_size_);
  }
  if (out.size() < e.size) Fail("a stream is longer than its sectors");
  out.resize(static_cast<size_t>(e.size));
  return out;
}

}  // namespace zintra::simtool
