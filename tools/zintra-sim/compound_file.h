// CompoundFile: the streams of an OLE compound file (the container of Outlook's .msg
// files), read from its bytes: header, sector allocation table (with its extension
// sectors), directory and mini stream. Storages are listed by name; streams are read
// whole. Version 3 (512-byte sectors) and 4 (4096-byte sectors) files.
//
// A file that breaks the format (a chain that loops or leaves the file, a directory
// entry out of range) throws InputError naming the file and what is wrong; nothing
// is read past the bytes given.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zintra::simtool {

class CompoundFile {
 public:
  struct Entry {
    std::string name;  // UTF-8
    bool storage = false;
    uint32_t left = 0, right = 0, child = 0;
    uint32_t start = 0;
    uint64_t size = 0;
  };
  static constexpr uint32_t kNone = 0xFFFFFFFF;

  CompoundFile(std::string bytes, std::string file);

  uint32_t root() const { return 0; }
  // The entries directly inside a storage, in no particular order.
  std::vector<uint32_t> Children(uint32_t storage) const;
  // The child of `storage` named `name` (compared without regard to case), if any.
  std::optional<uint32_t> Find(uint32_t storage, const std::string& name) const;
  const Entry& entry(uint32_t id) const { return entries_.at(id); }
  std::string Read(uint32_t stream) const;
  const std::string& file() const { return file_; }

 private:
  [[noreturn]] void Fail(const std::string& what) const;
  std::vector<uint32_t> Chain(const std::vector<uint32_t>& table, uint32_t start,
                              size_t limit) const;
  std::string ReadChain(uint32_t start, uint64_t size) const;
  uint32_t U32(size_t at) const;

  std::string bytes_;
  std::string file_;
  size_t sector_size_ = 512;
  size_t mini_sector_size_ = 64;
  uint32_t mini_cutoff_ = 4096;
  std::vector<uint32_t> fat_;
  std::vector<uint32_t> mini_fat_;
  std::string mini_stream_;
  std::vector<Entry> entries_;
};

}  // namespace zintra::simtool
