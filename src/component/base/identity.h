#pragma once

#include <windows.h>

#include <oaidl.h>

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "component/base/com_ptr.h"
#include "component/base/dispatcher.h"
#include "component/base/module.h"

namespace tavrix::component {

/// The one identity of an object that consists of several faces, one for each interface. The
/// object derives from it, owns its faces as members, and dies with the last reference. It may
/// stand inside another object (aggregation): then that object is what callers see.
class Identity {
 public:
  explicit Identity(IUnknown* outer = nullptr);
  Identity(const Identity&) = delete;
  Identity& operator=(const Identity&) = delete;
  virtual ~Identity() = default;

  /// What callers see as the object.
  [[nodiscard]] IUnknown& Controlling() { return *controlling_; }
  /// The object itself, even inside another: for whoever creates it.
  [[nodiscard]] IUnknown& Inner() { return inner_; }
  [[nodiscard]] const Dispatcher& Late() const { return dispatcher_; }

 protected:
  /// `face` answers `iid` from now on.
  void Publish(const IID& iid, IUnknown* face) { faces_.push_back({iid, face}); }
  /// As `Publish` for a dual interface; the first one also answers IDispatch.
  void PublishDual(const IID& iid, IDispatch* face);

 private:
  class InnerUnknown : public IUnknown {
   public:
    explicit InnerUnknown(Identity& owner) : owner_(owner) {}
    STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++owner_.references_; }
    STDMETHODIMP_(ULONG) Release() noexcept override;

   private:
    Identity& owner_;
  };
  struct Entry {
    IID iid;
    IUnknown* face;
  };

  ModuleLock lock_;
  std::atomic<ULONG> references_ = 1;
  InnerUnknown inner_{*this};
  IUnknown* controlling_;
  std::vector<Entry> faces_;
  Dispatcher dispatcher_;
};

/// A face: one interface of an object, with the object's identity.
template <class Interface>
class Face : public Interface {
 public:
  explicit Face(Identity& owner) : owner_(owner) {}
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override {
    return owner_.Controlling().QueryInterface(iid, result);
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return owner_.Controlling().AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return owner_.Controlling().Release(); }

 protected:
  ~Face() = default;
  [[nodiscard]] Identity& Owner() { return owner_; }

 private:
  Identity& owner_;
};

/// A face of a dual interface: calls by name go to the whole object.
template <class Interface>
class DualFace : public Face<Interface> {
 public:
  using Face<Interface>::Face;

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** result) noexcept override {
    return DescriptionOf(__uuidof(Interface), index, result);
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                             DISPID* ids) noexcept override {
    return this->Owner().Late().GetIDsOfNames(names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept override {
    return this->Owner().Late().Invoke(id, locale, flags, arguments, result, exception,
                                       bad_argument);
  }

 protected:
  ~DualFace() = default;
};

/// A new object that its holder owns; give the arguments of its constructor.
template <class Object, class... Arguments>
[[nodiscard]] ComPtr<IUnknown> MakeObject(Arguments&&... arguments) {
  auto object = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
  return ComPtr<IUnknown>::Attach(&object.release()->Inner());
}

}  // namespace tavrix::component
