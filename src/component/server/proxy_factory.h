#pragma once

#include <windows.h>

#include <objidl.h>

#include "com/com_object.h"

namespace tavrix::component {

/// Proxies and stubs of the interfaces that this module's type libraries describe, read from the
/// module itself. Each class of the library answers with it when it is asked for an
/// IPSFactoryBuffer.
class ProxyFactory : public com::Implements<IPSFactoryBuffer> {
 public:
  STDMETHODIMP CreateProxy(IUnknown* outer, REFIID iid, IRpcProxyBuffer** proxy,
                           void** result) noexcept override;
  STDMETHODIMP CreateStub(REFIID iid, IUnknown* server, IRpcStubBuffer** result) noexcept override;
};

/// Lets this process carry the public interfaces between apartments where nobody has registered
/// them: the library's own registration leaves the host's (IFormUI, IDesignUI, IPickerUI) alone,
/// and activation without registration knows none. The process forgets it when it is done with COM:
/// every new use of the library offers them anew.
void OfferProxies();

}  // namespace tavrix::component
