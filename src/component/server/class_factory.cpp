#include "component/server/class_factory.h"

#include "component/base/abi.h"

namespace tavrix::component {

ClassFactory::ClassFactory(const ClassEntry& entry)
    : Face<IClassFactory>(static_cast<Identity&>(*this)), entry_(entry) {
  Publish(IID_IClassFactory, this);
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** result) noexcept {
  return Guarded(IID_IClassFactory, [&] {
    Out(result) = nullptr;
    // An outer object must begin with the inner one's own identity.
    if (outer != nullptr && IsEqualGUID(iid, IID_IUnknown) == FALSE) return CLASS_E_NOAGGREGATION;
    return entry_.create(outer)->QueryInterface(iid, result);
  });
}

HRESULT ClassFactory::LockServer(WINBOOL lock) noexcept {
  return Guarded(IID_IClassFactory, [&] {
    if (lock != FALSE) {
      LockModule();
    } else {
      UnlockModule();
    }
  });
}

}  // namespace tavrix::component
