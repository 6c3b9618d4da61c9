#include "tools/zintra-sim/disk_files.h"

#include <cctype>

namespace zintra::simtool {

namespace {

bool IsWindowsPath(const std::string& p) {
  return (p.size() >= 3 && std::isalpha(static_cast<unsigned char>(p[0])) && p[1] == ':' &&
          p[2] == '\\') ||
         (p.size() >= 2 && p[0] == '\\' && p[1] == '\\');
}

std::string Shown(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (c == '\r') {
      out += "\\r";
    } else if (c == '\n') {
      out += "\\n";
    } else {
      out += c;
    }
  }
  return out.size() > 200 ? out.substr(0, 200) + "..." : out;
}

}  // namespace

std::vector<FileSpec> ReadFiles(const JsonNode& n) {
  std::vector<FileSpec> out;
  for (const JsonNode& f : n.Elements()) {
    f.OnlyKeys({"path", "folder", "text", "read_only", "unopenable", "note"});
    FileSpec placed;
    placed.source_line = f.Line();
    int kinds = f.Has("path") + f.Has("folder");
    if (kinds != 1) f.Fail("a file needs exactly one of \"path\" (a file) or \"folder\"");
    placed.folder = f.Has("folder");
    JsonNode where = f.Need(placed.folder ? "folder" : "path");
    placed.path = where.AsString();
    if (!IsWindowsPath(placed.path))
      where.Fail("expected a full Windows path, as \"C:\\\\Data\\\\x.txt\"");
    if (placed.folder) {
      for (const char* key : {"text", "read_only", "unopenable"}) {
        if (auto v = f.Get(key)) v->Fail("a folder has no text and no access of its own");
      }
    }
    placed.text = f.String("text");
    placed.read_only = f.Bool("read_only", false);
    placed.unopenable = f.Bool("unopenable", false);
    out.push_back(std::move(placed));
  }
  return out;
}

void PlaceFiles(sim::MemoryFileSystem& disk, const std::vector<FileSpec>& files) {
  for (const FileSpec& f : files) {
    if (f.folder) {
      disk.AddFolder(f.path);
      continue;
    }
    disk.AddFile(f.path, f.text);
    if (f.read_only) disk.SetReadOnly(f.path, true);
    if (f.unopenable) disk.SetUnopenable(f.path, true);
  }
}

ExpectSpec ReadFileExpectation(const JsonNode& n) {
  n.OnlyKeys({"file", "content", "contains", "exists", "present", "note"});
  ExpectSpec e;
  e.kind = ExpectKind::kFile;
  e.source_line = n.Line();
  JsonNode file = n.Need("file");
  e.host.fields["path"] = file.AsString();
  if (!IsWindowsPath(e.host.fields["path"])) file.Fail("expected a full Windows path");
  int kinds = n.Has("content") + n.Has("contains") + n.Has("exists");
  if (kinds != 1)
    n.Fail("a file expectation needs exactly one of \"content\", \"contains\", \"exists\"");
  if (auto c = n.Get("content")) e.host.fields["content"] = c->AsString();
  if (auto c = n.Get("contains")) e.host.fields["contains"] = c->AsString();
  if (auto x = n.Get("exists")) e.host.fields["exists"] = x->AsBool() ? "True" : "False";
  e.present = n.Bool("present", true);
  if (n.Has("present") && !n.Has("contains"))
    n.Need("present").Fail("\"present\" goes with \"contains\"");
  return e;
}

std::map<std::string, std::optional<std::string>> FilesNamed(
    const sim::MemoryFileSystem& disk, const std::vector<ExpectSpec>& expectations) {
  std::map<std::string, std::optional<std::string>> out;
  for (const ExpectSpec& e : expectations) {
    if (e.kind == ExpectKind::kFile)
      out[e.host.fields.at("path")] = disk.Contents(e.host.fields.at("path"));
  }
  return out;
}

std::pair<bool, std::string> CheckFile(const ExpectSpec& e,
                                       const std::optional<std::string>& found) {
  const auto& f = e.host.fields;
  const std::string& path = f.at("path");
  std::string what = found ? "'" + Shown(*found) + "'" : std::string("absent");
  if (auto x = f.find("exists"); x != f.end()) {
    bool want = x->second == "True";
    return {found.has_value() == want, "file " + path + " is " + (found ? "there" : "absent") +
                                           ", expected " + (want ? "there" : "absent")};
  }
  if (!found) return {false, "file " + path + " is absent"};
  if (auto c = f.find("content"); c != f.end()) {
    return {*found == c->second,
            "file " + path + " holds " + what + ", expected '" + Shown(c->second) + "'"};
  }
  const std::string& part = f.at("contains");
  bool has = found->find(part) != std::string::npos;
  return {has == e.present, "file " + path + " holds " + what + ", expected " +
                                (e.present ? "" : "no ") + "'" + Shown(part) + "' in it"};
}

}  // namespace zintra::simtool
