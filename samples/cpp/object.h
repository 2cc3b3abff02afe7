// What every COM object of this program has, and owners of what COM hands out.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>
#include <oleauto.h>

#include <atomic>
#include <string>
#include <utility>

/// Owns a reference.
template <class Interface>
class Ref {
 public:
  Ref() = default;
  /// Takes over a reference that the caller has been given.
  explicit Ref(Interface* given) : pointer_(given) {}
  Ref(Ref&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Ref(const Ref&) = delete;
  Ref& operator=(Ref&& other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Ref() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  Interface* operator->() const { return pointer_; }
  Interface* Get() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  /// For out-parameters of an owner that holds nothing yet.
  Interface** Put() { return &pointer_; }
  /// The object's other interface; empty when it has none.
  template <class Other>
  Ref<Other> As() const {
    void* found = nullptr;
    if (pointer_ != nullptr) pointer_->QueryInterface(__uuidof(Other), &found);
    return Ref<Other>(static_cast<Other*>(found));
  }

 private:
  Interface* pointer_ = nullptr;
};

/// Owns a text of Automation.
class Text {
 public:
  Text() = default;  // empty: a BSTR may be null
  explicit Text(const std::wstring& text) : text_(SysAllocString(text.c_str())) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(text_); }
  BSTR Get() const { return text_; }
  /// For results, of an owner that holds nothing yet.
  BSTR* Put() { return &text_; }
  std::wstring Words() const { return text_ == nullptr ? L"" : text_; }

 private:
  BSTR text_ = nullptr;
};

/// An object with these interfaces, all of them IDispatch. It begins with one reference, its
/// maker's. The library calls through the interfaces of qnSystem where an object has them, so calls
/// by name are not needed.
template <class... Interfaces>
class Object : public Interfaces... {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    *result = nullptr;
    (Offer<Interfaces>(iid, result), ...);
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

 protected:
  virtual ~Object() = default;

  /// This object as a result of that interface.
  template <class Interface, class Result>
  HRESULT Give(Result** result) {
    *result = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }

 private:
  template <class Interface>
  void Offer(REFIID iid, void** result) {
    const bool any = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
    if (*result == nullptr && (any || IsEqualIID(iid, __uuidof(Interface))))
      *result = static_cast<Interface*>(this);
  }

  std::atomic<ULONG> references_{1};
};
