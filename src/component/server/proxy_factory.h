#pragma once

#include <windows.h>

#include <objidl.h>

#include "component/base/identity.h"

namespace tavrix::component {

/// Proxies and stubs of the interfaces that this module's type libraries describe, read from the
/// module itself. Each class of the library answers with it when it is asked for an
/// IPSFactoryBuffer.
class ProxyFactory : public Identity, public Face<IPSFactoryBuffer> {
 public:
  ProxyFactory();

  STDMETHODIMP CreateProxy(IUnknown* outer, REFIID iid, IRpcProxyBuffer** proxy,
                           void** result) noexcept override;
  STDMETHODIMP CreateStub(REFIID iid, IUnknown* server, IRpcStubBuffer** result) noexcept override;
};

/// Lets this process carry the host's interfaces (IFormUI, IDesignUI, IPickerUI) between apartments
/// where the host has not registered them: the library's own registration leaves them alone. The
/// process forgets it when it is done with COM: every new use of the library offers them anew.
void OfferProxies();

}  // namespace tavrix::component
