#include "app/com/connection_point.h"

#include <olectl.h>

#include "app/com/values.h"

namespace desk::app {

void ConnectionPoint::Raise(DISPID member, std::span<VARIANT> arguments) {
  const ComPtr<IUnknown> keep(this);
  const auto snapshot = listeners_;
  for (const auto& [cookie, listener] : snapshot) {
    if (!listeners_.contains(cookie)) continue;
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    Variant ignored;
    // A listener that fails has had its event.
    listener->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                     ignored.Put(), nullptr, nullptr);
  }
}

void ConnectionPoint::Retire() {
  container_ = nullptr;
  listeners_.clear();
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* iid) {
  if (iid == nullptr) return E_POINTER;
  *iid = events_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (container == nullptr) return E_POINTER;
  *container = ComPtr<IConnectionPointContainer>(container_).Detach();
  return container_ != nullptr ? S_OK : E_UNEXPECTED;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* listener, DWORD* cookie) {
  if (listener == nullptr || cookie == nullptr) return E_POINTER;
  *cookie = 0;
  if (container_ == nullptr) return CONNECT_E_CANNOTCONNECT;
  return Guarded([&]() -> HRESULT {
    ComPtr<IDispatch> events = ComPtr<IUnknown>(listener).As<IDispatch>(events_);
    if (!events) events = Query<IDispatch>(listener);
    if (!events) return CONNECT_E_CANNOTCONNECT;
    listeners_.emplace(++last_cookie_, std::move(events));
    *cookie = last_cookie_;
    return S_OK;
  });
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) {
  return listeners_.erase(cookie) == 1 ? S_OK : CONNECT_E_NOCONNECTION;
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** connections) {
  if (connections == nullptr) return E_POINTER;
  *connections = nullptr;
  return E_NOTIMPL;
}

}  // namespace desk::app
