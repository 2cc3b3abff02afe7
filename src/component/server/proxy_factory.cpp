#include "component/server/proxy_factory.h"

#include <oaidl.h>

#include "com/abi.h"
#include "com/type_library.h"
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

namespace {

/// The interface as its table of methods, by which calls travel.
com::ComPtr<ITypeInfo> MethodsOf(const IID& iid) {
  com::ComPtr<ITypeInfo> info = com::TypeInfoOf(iid);
  HREFTYPE reference = 0;
  com::ComPtr<ITypeInfo> methods;
  if (FAILED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference))) return info;
  com::Check(info->GetRefTypeInfo(reference, methods.Put()));
  return methods;
}

}  // namespace

HRESULT ProxyFactory::CreateProxy(IUnknown* outer, REFIID iid, IRpcProxyBuffer** proxy,
                                  void** result) noexcept {
  return com::Guarded(IID_IPSFactoryBuffer, [&] {
    return CreateProxyFromTypeInfo(MethodsOf(iid).Get(), outer, iid, proxy, result);
  });
}

HRESULT ProxyFactory::CreateStub(REFIID iid, IUnknown* server, IRpcStubBuffer** result) noexcept {
  return com::Guarded(IID_IPSFactoryBuffer, [&] {
    return CreateStubFromTypeInfo(MethodsOf(iid).Get(), iid, server, result);
  });
}

void OfferProxies() {
  // What derives from IChildControl is left out: the system makes a proxy of two parts for it, and
  // asks for the second in a way that only a registered one can answer.
  for (const IID& iid : {IID_IFormUI, IID_IDesignUI, IID_IPickerUI, IID__Kjkm, IID__selKjkm,
                         IID__clsKjkm, IID__colKjkm, IID_IChildControls, IID_IChildControl,
                         IID_IGridRows, IID_ITreeNodes, IID_ITreeNode}) {
    CLSID known{};
    if (FAILED(CoGetPSClsid(iid, &known))) static_cast<void>(CoRegisterPSClsid(iid, CLSID_Kjkm));
  }
}

}  // namespace tavrix::component
