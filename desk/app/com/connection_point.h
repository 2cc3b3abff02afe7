#pragma once

#include <windows.h>

#include <ocidl.h>

#include <map>
#include <span>
#include <vector>

#include "app/com/object.h"

namespace desk::app {

/// One source of events and those who listen to it.
class ConnectionPoint : public ComObject<IConnectionPoint> {
 public:
  /// `container` must call `Retire` when it goes.
  ConnectionPoint(IConnectionPointContainer* container, const IID& events)
      : container_(container), events_(events) {}

  /// Calls `member` on all listeners, in the order they came; arguments stand in reverse, as always
  /// in Automation. A listener may advise and unadvise meanwhile.
  void Raise(DISPID member, std::span<VARIANT> arguments);
  void Retire();

  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* listener, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

 private:
  IConnectionPointContainer* container_;
  IID events_;
  std::map<DWORD, ComPtr<IDispatch>> listeners_;
  DWORD last_cookie_ = 0;
};

}  // namespace desk::app
