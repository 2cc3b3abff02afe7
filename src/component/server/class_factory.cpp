#include "component/server/class_factory.h"

#include "com/abi.h"

namespace tavrix::component {

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** result) noexcept {
  return com::Guarded(IID_IClassFactory, [&] {
    com::Out(result) = nullptr;
    // An outer object must begin with the inner one's own identity.
    if (outer != nullptr && IsEqualGUID(iid, IID_IUnknown) == FALSE) return CLASS_E_NOAGGREGATION;
    return entry_.create(outer)->QueryInterface(iid, result);
  });
}

HRESULT ClassFactory::LockServer(WINBOOL lock) noexcept {
  return com::Guarded(IID_IClassFactory, [&] {
    if (lock != FALSE) {
      com::LockModule();
    } else {
      com::UnlockModule();
    }
  });
}

}  // namespace tavrix::component
