#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <initializer_list>
#include <vector>

#include "com/com_object.h"
#include "com/enumerator.h"
#include "com/variant.h"
#include "host/non_copyable.h"

namespace tavrix::com {

/// The sinks of one source interface of an object, and its IConnectionPoint. The point shares its
/// object's life but has an identity of its own, as the protocol wants it.
class EventSource : private host::NonCopyable {
 public:
  EventSource(ComObject& owner, const IID& source) : point_(*this, owner), source_(source) {}

  [[nodiscard]] const IID& Source() const { return source_; }
  [[nodiscard]] ComPtr<IConnectionPoint> Point() { return ComPtr<IConnectionPoint>(&point_); }

  /// Calls member `id` of every sink that is advised now and still is when its turn comes. What a
  /// sink answers does not matter. While frozen, events wait for the thaw.
  void Fire(DISPID id, std::vector<Variant> arguments);
  /// Freezes nest.
  void Freeze() { ++freezes_; }
  /// Delivers, at the end of the last freeze, what has waited.
  void Thaw();

 private:
  class ConnectionPoint : public IConnectionPoint {
   public:
    ConnectionPoint(EventSource& source, ComObject& owner) : source_(source), owner_(owner) {}
    STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return owner_.ControllingUnknown().AddRef(); }
    STDMETHODIMP_(ULONG) Release() noexcept override {
      return owner_.ControllingUnknown().Release();
    }
    STDMETHODIMP GetConnectionInterface(IID* iid) noexcept override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** result) noexcept override;
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override;
    STDMETHODIMP Unadvise(DWORD cookie) noexcept override;
    STDMETHODIMP EnumConnections(IEnumConnections** result) noexcept override;

   private:
    EventSource& source_;
    ComObject& owner_;
  };
  struct Waiting {
    DISPID id;
    std::vector<Variant> arguments;
  };
  [[nodiscard]] bool Advised(DWORD cookie) const;
  [[nodiscard]] DWORD Advise(IUnknown* sink);
  [[nodiscard]] bool Unadvise(DWORD cookie);
  void Deliver(const Waiting& event);

  ConnectionPoint point_;
  IID source_;
  std::vector<Connection> sinks_;
  DWORD last_cookie_ = 0;
  int freezes_ = 0;
  std::vector<Waiting> waiting_;
};

/// IConnectionPointContainer of an object with one source interface.
class ConnectionPointContainer : public InterfaceImpl<IConnectionPointContainer> {
 public:
  ConnectionPointContainer(ComObject& owner, EventSource& source)
      : InterfaceImpl(owner), source_(source) {}
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** result) noexcept override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** result) noexcept override;

 private:
  EventSource& source_;
};

}  // namespace tavrix::com
