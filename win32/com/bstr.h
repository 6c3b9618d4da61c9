// Bstr: owns one BSTR (SysFreeString on destruction); built from and read as UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "win32/com/windows_api.h"

namespace zintra::win32 {

class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::string_view utf8);
  static Bstr Attach(BSTR b) {
    Bstr r;
    r.b_ = b;
    return r;
  }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  Bstr(Bstr&& o) noexcept : b_(std::exchange(o.b_, nullptr)) {}
  Bstr& operator=(Bstr&& o) noexcept {
    std::swap(b_, o.b_);
    return *this;
  }
  ~Bstr() { SysFreeString(b_); }

  BSTR Get() const { return b_; }
  BSTR Detach() { return std::exchange(b_, nullptr); }
  BSTR* Put() {
    SysFreeString(std::exchange(b_, nullptr));
    return &b_;
  }
  std::string ToUtf8() const { return ToUtf8(b_); }
  // A null BSTR reads as "", as the run time reads it.
  static std::string ToUtf8(BSTR b);

 private:
  BSTR b_ = nullptr;
};

}  // namespace zintra::win32
