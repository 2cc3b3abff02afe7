#pragma once

#include <windows.h>

#include <ocidl.h>

#include "component/base/identity.h"

namespace tavrix::component {

/// IProvideClassInfo2: the class in the type library, and the interface of its events.
class ClassInfo : public Face<IProvideClassInfo2> {
 public:
  ClassInfo(Identity& owner, const CLSID& clsid, const IID& source)
      : Face(owner), clsid_(clsid), source_(source) {}
  STDMETHODIMP GetClassInfo(ITypeInfo** result) noexcept override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* result) noexcept override;

 private:
  CLSID clsid_;
  IID source_;
};

}  // namespace tavrix::component
