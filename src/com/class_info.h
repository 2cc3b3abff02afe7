#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/abi.h"
#include "com/com_object.h"
#include "com/type_library.h"

namespace tavrix::com {

/// `GetClassInfo` of IProvideClassInfo, or of what derives from it: the class in the type library.
template <class Interface>
class ClassInfoImpl : public InterfaceImpl<Interface> {
 public:
  ClassInfoImpl(ComObject& owner, const CLSID& clsid)
      : InterfaceImpl<Interface>(owner), clsid_(clsid) {}
  STDMETHODIMP GetClassInfo(ITypeInfo** result) noexcept override {
    return Guarded(__uuidof(Interface), [&] {
      Out(result) = nullptr;
      *result = TypeInfoOf(clsid_).Detach();
    });
  }

 protected:
  ~ClassInfoImpl() = default;

 private:
  CLSID clsid_;
};

/// For a class without events.
class ClassInfo : public ClassInfoImpl<IProvideClassInfo> {
 public:
  using ClassInfoImpl::ClassInfoImpl;
};

/// IProvideClassInfo2, of a class with events: their interface too.
class EventClassInfo : public ClassInfoImpl<IProvideClassInfo2> {
 public:
  EventClassInfo(ComObject& owner, const CLSID& clsid, const IID& source)
      : ClassInfoImpl(owner, clsid), source_(source) {}
  STDMETHODIMP GetGUID(DWORD kind, GUID* result) noexcept override {
    return Guarded(IID_IProvideClassInfo2, [&] {
      Out(result) = GUID{};
      if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
      *result = source_;
      return S_OK;
    });
  }

 private:
  IID source_;
};

}  // namespace tavrix::com
