#include "tools/zintra-sim/text_decoding.h"

#include <glib.h>

#include "src/core/text.h"

namespace zintra::simtool {

bool IsUtf8(const std::string& bytes) {
  return g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr);
}

std::string ConvertToUtf8(const std::string& bytes, const std::string& charset) {
  gsize written = 0;
  GError* error = nullptr;
  gchar* converted = g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8",
                               charset.c_str(), nullptr, &written, &error);
  if (error != nullptr) g_error_free(error);
  if (converted == nullptr) return "";
  std::string out(converted, written);
  g_free(converted);
  return out;
}

std::string DecodeText(const std::string& bytes, const std::string& declared, bool* fell_back) {
  if (fell_back != nullptr) *fell_back = false;
  std::string charset = text::Trim(declared);
  bool unicode = charset.empty() || text::EqualsNoCase(charset, "utf-8") ||
                 text::EqualsNoCase(charset, "utf8") || text::EqualsNoCase(charset, "us-ascii");
  if (!unicode) {
    std::string converted = ConvertToUtf8(bytes, charset);
    if (!converted.empty() || bytes.empty()) return converted;
  }
  if (IsUtf8(bytes)) return bytes;
  if (fell_back != nullptr) *fell_back = true;
  std::string converted = ConvertToUtf8(bytes, "WINDOWS-1252");
  return converted.empty() ? ConvertToUtf8(bytes, "ISO-8859-1") : converted;
}

}  // namespace zintra::simtool
