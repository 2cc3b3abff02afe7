#include "com/events.h"

#include <olectl.h>

#include <algorithm>
#include <utility>

#include "com/trace.h"
#include "host/trace.h"

namespace tavrix::com {

bool EventSource::Advised(DWORD cookie) const {
  return std::any_of(sinks_.begin(), sinks_.end(),
                     [cookie](const Connection& sink) { return sink.cookie == cookie; });
}

DWORD EventSource::Advise(IUnknown* sink) {
  // A sink may answer the source interface only, as those of scripts do, or IDispatch only.
  const ComPtr<IUnknown> given(sink);
  auto wanted = given.As<IDispatch>(source_);
  if (!wanted) wanted = given.As<IDispatch>();
  if (!wanted) throw ComFailure(CONNECT_E_CANNOTCONNECT);
  sinks_.push_back({++last_cookie_, wanted});
  return last_cookie_;
}

bool EventSource::Unadvise(DWORD cookie) {
  const auto found = std::find_if(sinks_.begin(), sinks_.end(), [cookie](const Connection& sink) {
    return sink.cookie == cookie;
  });
  if (found == sinks_.end()) return false;
  // The sink's last release may call back: it must not find a half-changed list.
  const Connection gone = std::move(*found);
  sinks_.erase(found);
  return true;
}

void EventSource::Fire(DISPID id, std::vector<Variant> arguments) {
  Waiting event{id, std::move(arguments)};
  if (freezes_ > 0) {
    waiting_.push_back(std::move(event));
  } else {
    Deliver(event);
  }
}

void EventSource::Thaw() {
  if (freezes_ == 0 || --freezes_ > 0) return;
  const ComPtr<IConnectionPoint> keep = Point();
  // A listener may freeze again: what has not been delivered then goes on waiting.
  while (freezes_ == 0 && !waiting_.empty()) {
    const Waiting event = std::move(waiting_.front());
    waiting_.erase(waiting_.begin());
    Deliver(event);
  }
}

void EventSource::Deliver(const Waiting& event) {
  const ComPtr<IConnectionPoint> keep = Point();
  std::vector<VARIANT> reversed;
  for (auto i = event.arguments.rbegin(); i != event.arguments.rend(); ++i) {
    reversed.push_back(i->Get());
  }
  if (host::Tracing() && !sinks_.empty()) {
    TraceEvent(source_, event.id,
               {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0});
  }
  const std::vector<Connection> snapshot = sinks_;
  for (const Connection& sink : snapshot) {
    if (!Advised(sink.cookie)) continue;
    DISPPARAMS arguments{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    Variant ignored;
    static_cast<void>(static_cast<IDispatch*>(sink.sink.Get())
                          ->Invoke(event.id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                   &arguments, ignored.Put(), nullptr, nullptr));
  }
}

HRESULT EventSource::ConnectionPoint::QueryInterface(REFIID iid, void** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  const bool own =
      IsEqualGUID(iid, IID_IUnknown) != FALSE || IsEqualGUID(iid, IID_IConnectionPoint) != FALSE;
  if (!own) return E_NOINTERFACE;
  ComPtr<IConnectionPoint>(this).CopyTo(reinterpret_cast<IConnectionPoint**>(result));
  return S_OK;
}

HRESULT EventSource::ConnectionPoint::GetConnectionInterface(IID* iid) noexcept {
  return Guarded(IID_IConnectionPoint, [&] { Out(iid) = source_.Source(); });
}

HRESULT EventSource::ConnectionPoint::GetConnectionPointContainer(
    IConnectionPointContainer** result) noexcept {
  if (result == nullptr) return E_POINTER;
  return owner_.ControllingUnknown().QueryInterface(IID_IConnectionPointContainer,
                                                    reinterpret_cast<void**>(result));
}

HRESULT EventSource::ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) noexcept {
  return Guarded(IID_IConnectionPoint, [&] {
    Out(cookie) = 0;
    if (sink == nullptr) throw ComFailure(E_POINTER);
    *cookie = source_.Advise(sink);
  });
}

HRESULT EventSource::ConnectionPoint::Unadvise(DWORD cookie) noexcept {
  return Guarded(IID_IConnectionPoint,
                 [&] { return source_.Unadvise(cookie) ? S_OK : CONNECT_E_NOCONNECTION; });
}

HRESULT EventSource::ConnectionPoint::EnumConnections(IEnumConnections** result) noexcept {
  return Guarded(IID_IConnectionPoint,
                 [&] { Out(result) = ConnectionEnumerator::Make(source_.sinks_).Detach(); });
}

HRESULT ConnectionPointContainer::EnumConnectionPoints(IEnumConnectionPoints** result) noexcept {
  return Guarded(IID_IConnectionPointContainer,
                 [&] { Out(result) = PointEnumerator::Make({source_.Point()}).Detach(); });
}

HRESULT ConnectionPointContainer::FindConnectionPoint(REFIID iid,
                                                      IConnectionPoint** result) noexcept {
  return Guarded(IID_IConnectionPointContainer, [&] {
    Out(result) = nullptr;
    if (IsEqualGUID(iid, source_.Source()) == FALSE) return CONNECT_E_NOCONNECTION;
    *result = source_.Point().Detach();
    return S_OK;
  });
}

}  // namespace tavrix::com
