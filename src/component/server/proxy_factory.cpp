#include "component/server/proxy_factory.h"

#include <oaidl.h>

#include "component/base/abi.h"
#include "component/base/member_table.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "qnPickerUI.h"
#include "tavrix.h"

// Of the system, and in no header of the toolchain.
extern "C" {
HRESULT WINAPI CreateProxyFromTypeInfo(ITypeInfo* info, IUnknown* outer, REFIID iid,
                                       IRpcProxyBuffer** proxy, void** result);
HRESULT WINAPI CreateStubFromTypeInfo(ITypeInfo* info, REFIID iid, IUnknown* server,
                                      IRpcStubBuffer** result);
}

namespace tavrix::component {

ProxyFactory::ProxyFactory() : Face<IPSFactoryBuffer>(static_cast<Identity&>(*this)) {
  Publish(IID_IPSFactoryBuffer, this);
}

HRESULT ProxyFactory::CreateProxy(IUnknown* outer, REFIID iid, IRpcProxyBuffer** proxy,
                                  void** result) noexcept {
  return Guarded(IID_IPSFactoryBuffer, [&] {
    return CreateProxyFromTypeInfo(MemberTable::Of(iid).Methods().Get(), outer, iid, proxy, result);
  });
}

HRESULT ProxyFactory::CreateStub(REFIID iid, IUnknown* server, IRpcStubBuffer** result) noexcept {
  return Guarded(IID_IPSFactoryBuffer, [&] {
    return CreateStubFromTypeInfo(MemberTable::Of(iid).Methods().Get(), iid, server, result);
  });
}

void OfferProxies() {
  for (const IID& iid : {IID_IFormUI, IID_IDesignUI, IID_IPickerUI}) {
    CLSID known{};
    if (FAILED(CoGetPSClsid(iid, &known))) static_cast<void>(CoRegisterPSClsid(iid, CLSID_Kjkm));
  }
}

}  // namespace tavrix::component
