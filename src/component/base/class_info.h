#pragma once

#include <windows.h>

#include <ocidl.h>

#include "component/base/abi.h"
#include "component/base/identity.h"
#include "component/base/type_library.h"

namespace tavrix::component {

/// `GetClassInfo` of IProvideClassInfo, or of what derives from it: the class in the type library.
template <class Interface>
class ClassInfoFace : public Face<Interface> {
 public:
  ClassInfoFace(Identity& owner, const CLSID& clsid) : Face<Interface>(owner), clsid_(clsid) {}
  STDMETHODIMP GetClassInfo(ITypeInfo** result) noexcept override {
    return Guarded(__uuidof(Interface), [&] {
      Out(result) = nullptr;
      *result = TypeInfoOf(clsid_).Detach();
    });
  }

 protected:
  ~ClassInfoFace() = default;

 private:
  CLSID clsid_;
};

/// For a class without events.
class ClassInfo : public ClassInfoFace<IProvideClassInfo> {
 public:
  using ClassInfoFace::ClassInfoFace;
};

}  // namespace tavrix::component
