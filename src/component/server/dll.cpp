#include <windows.h>

#include <algorithm>

#include "accessible/accessible_object.h"
#include "com/abi.h"
#include "com/module.h"
#include "com/trace.h"
#include "component/server/class_factory.h"
#include "component/server/proxy_factory.h"
#include "component/server/registration.h"

// The four entry points of the library.

namespace com = tavrix::com;
namespace component = tavrix::component;

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** result) {
  com::StartTrace();
  return com::Guarded(IID_IClassFactory, [&] {
    com::Out(result) = nullptr;
    const auto classes = component::AllClasses();
    const auto found =
        std::find_if(classes.begin(), classes.end(), [&](const component::ClassEntry& entry) {
          return IsEqualGUID(*entry.clsid, clsid) != FALSE;
        });
    if (found == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
    if (IsEqualGUID(iid, IID_IPSFactoryBuffer) != FALSE) {
      return com::MakeObject<component::ProxyFactory>()->QueryInterface(iid, result);
    }
    component::OfferProxies();
    tavrix::accessible::OfferAccessibility();
    return com::MakeObject<component::ClassFactory>(*found)->QueryInterface(iid, result);
  });
}

STDAPI DllCanUnloadNow() {
  return com::ModuleLocks() == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
  return component::Register();
}

STDAPI DllUnregisterServer() {
  return component::Unregister();
}
