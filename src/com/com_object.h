#pragma once

#include <windows.h>

#include <oaidl.h>

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "com/com_ptr.h"
#include "com/dispatcher.h"
#include "com/module.h"
#include "host/non_copyable.h"

namespace tavrix::com {

/// The one identity of an object that consists of several implementations, one for each interface.
/// The object derives from it, has the implementations as members or bases, and dies with the last
/// reference. It may stand inside another object (aggregation): then that object is what callers
/// see.
class ComObject : private host::NonCopyable {
 public:
  explicit ComObject(IUnknown* outer = nullptr);
  virtual ~ComObject() = default;

  /// What callers see as the object.
  [[nodiscard]] IUnknown& ControllingUnknown() { return *controlling_; }
  /// The object itself, even inside another: for whoever creates it.
  [[nodiscard]] IUnknown& Inner() { return inner_; }
  [[nodiscard]] const Dispatcher& GetDispatcher() const { return dispatcher_; }

 protected:
  /// `implementation` answers `iid` from now on.
  void AddInterface(const IID& iid, IUnknown* implementation) {
    interfaces_.push_back({iid, implementation});
  }
  /// As `AddInterface` for a dual interface; the first one also answers IDispatch.
  void AddDualInterface(const IID& iid, IDispatch* implementation);

 private:
  class InnerUnknown : public IUnknown {
   public:
    explicit InnerUnknown(ComObject& owner) : owner_(owner) {}
    STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++owner_.references_; }
    STDMETHODIMP_(ULONG) Release() noexcept override;

   private:
    ComObject& owner_;
  };
  struct Entry {
    IID iid;
    IUnknown* implementation;
  };

  ModuleLock lock_;
  std::atomic<ULONG> references_ = 1;
  InnerUnknown inner_{*this};
  IUnknown* controlling_;
  std::vector<Entry> interfaces_;
  Dispatcher dispatcher_;
};

/// The implementation of one interface of an object, with the object's identity.
template <class Interface>
class InterfaceImpl : public Interface {
 public:
  using InterfaceType = Interface;

  explicit InterfaceImpl(ComObject& owner) : owner_(owner) {}
  InterfaceImpl(const InterfaceImpl&) = delete;
  InterfaceImpl& operator=(const InterfaceImpl&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override {
    return owner_.ControllingUnknown().QueryInterface(iid, result);
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return owner_.ControllingUnknown().AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return owner_.ControllingUnknown().Release(); }

 protected:
  ~InterfaceImpl() = default;
  [[nodiscard]] ComObject& Owner() { return owner_; }

 private:
  ComObject& owner_;
};

/// The implementation of a dual interface: calls by name go to the whole object.
template <class Interface>
class DualInterfaceImpl : public InterfaceImpl<Interface> {
 public:
  using InterfaceImpl<Interface>::InterfaceImpl;

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
    return this->Owner().GetDispatcher().GetIDsOfNames(names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept override {
    return this->Owner().GetDispatcher().Invoke(id, locale, flags, arguments, result, exception,
                                                bad_argument);
  }

 protected:
  ~DualInterfaceImpl() = default;
};

/// An object whose class overrides the members of its interfaces itself. Each answers its own
/// identifier; what they inherit is added with `AddInterface`.
template <class... Interfaces>
class Implements : public ComObject, public InterfaceImpl<Interfaces>... {
 public:
  Implements() : InterfaceImpl<Interfaces>(static_cast<ComObject&>(*this))... {
    (AddInterface(__uuidof(Interfaces), static_cast<Interfaces*>(this)), ...);
  }
  STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override {
    return ControllingUnknown().QueryInterface(iid, result);
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ControllingUnknown().AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return ControllingUnknown().Release(); }
};

/// A new object that its holder owns, itself even inside another; give the arguments of its
/// constructor.
template <class Object, class... Arguments>
[[nodiscard]] ComPtr<IUnknown> MakeObject(Arguments&&... arguments) {
  auto object = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
  return ComPtr<IUnknown>::Attach(&object.release()->Inner());
}

/// As `MakeObject`, as its class: of one that overrides its interfaces itself and stands alone.
template <class Object, class... Arguments>
[[nodiscard]] ComPtr<Object> Make(Arguments&&... arguments) {
  auto object = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
  return ComPtr<Object>::Attach(object.release());
}

}  // namespace tavrix::com
