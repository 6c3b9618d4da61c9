// ComPtr<T>: owns one reference to a COM interface. Copying adds a reference, moving
// transfers it, destruction releases it. Nothing is a null ComPtr.
#pragma once

#include <utility>

#include "win32/com/windows_api.h"

namespace zintra::win32 {

template <typename T>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  // Takes a new reference of its own to `p`.
  explicit ComPtr(T* p) : p_(p) {
    if (p_) p_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.p_) {}
  ComPtr(ComPtr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(p_, other.p_);
    return *this;
  }
  ~ComPtr() { Reset(); }

  // Adopts a reference the caller already owns (an out-parameter's result).
  static ComPtr Attach(T* p) {
    ComPtr result;
    result.p_ = p;
    return result;
  }
  // Gives up the reference without releasing it (an out-parameter of our own).
  T* Detach() { return std::exchange(p_, nullptr); }

  void Reset() {
    if (T* p = std::exchange(p_, nullptr)) p->Release();
  }
  T* Get() const { return p_; }
  T* operator->() const { return p_; }
  explicit operator bool() const { return p_ != nullptr; }
  // For an out-parameter: releases what is held first.
  T** Put() {
    Reset();
    return &p_;
  }

  // QueryInterface; a null ComPtr when the object lacks the interface.
  template <typename U>
  ComPtr<U> As() const {
    ComPtr<U> result;
    if (p_) p_->QueryInterface(__uuidof(U), reinterpret_cast<void**>(result.Put()));
    return result;
  }
  ComPtr<IUnknown> AsIID(REFIID iid) const {
    ComPtr<IUnknown> result;
    if (p_) p_->QueryInterface(iid, reinterpret_cast<void**>(result.Put()));
    return result;
  }

 private:
  T* p_ = nullptr;
};

}  // namespace zintra::win32
