#pragma once

#include <windows.h>

#include <unknwn.h>

#include <utility>

// Interfaces have no virtual destructor by their nature: objects end in Release alone.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

namespace tavrix::com {

/// Owns one reference to a COM object. The one place where references are counted by hand.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  /// Adds a reference.
  explicit ComPtr(Interface* object) : object_(object) { AddRef(); }
  ComPtr(const ComPtr& other) : object_(other.object_) { AddRef(); }
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class Derived>
  ComPtr(const ComPtr<Derived>& other) : object_(other.Get()) {
    AddRef();
  }
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_ != nullptr) std::exchange(object_, nullptr)->Release();
  }

  /// Takes over a reference that the caller owns.
  [[nodiscard]] static ComPtr Attach(Interface* object) {
    ComPtr owner;
    owner.object_ = object;
    return owner;
  }
  [[nodiscard]] Interface* Detach() { return std::exchange(object_, nullptr); }

  [[nodiscard]] Interface* Get() const { return object_; }
  Interface* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

  /// For out-parameters: drops what is held first.
  [[nodiscard]] Interface** Put() {
    *this = ComPtr();
    return &object_;
  }
  [[nodiscard]] void** PutVoid() { return reinterpret_cast<void**>(Put()); }

  /// Another interface of the same object; null when it has none.
  template <class Other>
  [[nodiscard]] ComPtr<Other> As() const {
    return As<Other>(__uuidof(Other));
  }
  template <class Other>
  [[nodiscard]] ComPtr<Other> As(const IID& iid) const {
    ComPtr<Other> other;
    if (object_ == nullptr || FAILED(object_->QueryInterface(iid, other.PutVoid()))) return {};
    return other;
  }

  /// Gives a reference of its own to a caller of the ABI.
  void CopyTo(Interface** result) const { *result = ComPtr(*this).Detach(); }

 private:
  void AddRef() {
    if (object_ != nullptr) object_->AddRef();
  }
  Interface* object_ = nullptr;
};

/// `object` as a `Wanted`; null when it is null or has none.
template <class Wanted>
[[nodiscard]] ComPtr<Wanted> Query(IUnknown* object) {
  return ComPtr<IUnknown>(object).template As<Wanted>();
}

}  // namespace tavrix::com
