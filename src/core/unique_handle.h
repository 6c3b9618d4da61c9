// UniqueHandle<Traits>: the one owner of a platform handle (an open registry key, a file,
// a window, a menu, a font): it closes the handle exactly once, when it goes out of scope
// or is reset, and moves but never copies. Traits say what a handle is:
//
//   struct Traits {
//     using Handle = ...;                 // the handle type
//     static Handle Invalid();            // the value that owns nothing
//     static bool IsValid(Handle);        // optional: when more than one value owns nothing
//     void Close(Handle) const;           // releases a valid handle; never throws
//   };
//
// Close may use state kept in the traits object (the port that opened the handle), which
// the owner carries. UniqueAny<Handle, close, invalid> makes traits for the common case of
// a free close function and one invalid value.
#pragma once

#include <concepts>
#include <utility>

namespace zintra {

template <typename Traits>
concept HandleTraits = requires(const Traits& traits, typename Traits::Handle handle) {
  { Traits::Invalid() } -> std::convertible_to<typename Traits::Handle>;
  traits.Close(handle);
};

template <HandleTraits Traits>
class UniqueHandle {
 public:
  using Handle = typename Traits::Handle;

  UniqueHandle() noexcept requires std::default_initializable<Traits>
  = default;
  explicit UniqueHandle(Handle handle, Traits traits = Traits{}) noexcept
      : handle_(handle), traits_(std::move(traits)) {}
  ~UniqueHandle() { reset(); }

  UniqueHandle(UniqueHandle&& other) noexcept
      : handle_(other.release()), traits_(std::move(other.traits_)) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) {
      reset(other.release());
      traits_ = std::move(other.traits_);
    }
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;

  Handle get() const noexcept { return handle_; }
  bool valid() const noexcept { return IsValid(handle_); }
  explicit operator bool() const noexcept { return valid(); }
  const Traits& traits() const noexcept { return traits_; }

  // Closes what is owned (if anything) and owns `handle` instead.
  void reset(Handle handle = Traits::Invalid()) noexcept {
    Handle old = std::exchange(handle_, handle);
    if (IsValid(old)) traits_.Close(old);
  }
  // Gives up ownership without closing.
  [[nodiscard]] Handle release() noexcept { return std::exchange(handle_, Traits::Invalid()); }
  // Closes what is owned and answers where an opening function writes the new handle.
  Handle* put() noexcept {
    reset();
    return &handle_;
  }

 private:
  static bool IsValid(Handle handle) noexcept {
    if constexpr (requires { Traits::IsValid(handle); }) {
      return Traits::IsValid(handle);
    } else {
      return handle != Traits::Invalid();
    }
  }

  Handle handle_ = Traits::Invalid();
  [[no_unique_address]] Traits traits_;
};

// Traits of a handle closed by a free function (whose result is ignored) and with one
// value that owns nothing.
template <typename H, auto kClose, H kInvalid = H{}>
struct FunctionHandleTraits {
  using Handle = H;
  static Handle Invalid() noexcept { return kInvalid; }
  void Close(Handle handle) const noexcept { static_cast<void>(kClose(handle)); }
};

template <typename H, auto kClose, H kInvalid = H{}>
using UniqueAny = UniqueHandle<FunctionHandleTraits<H, kClose, kInvalid>>;

}  // namespace zintra
