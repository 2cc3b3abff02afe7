#include "com/event_sink.h"

#include <utility>

#include "com/abi.h"
#include "com/com_object.h"

namespace tavrix::com {
namespace {

ComPtr<IConnectionPoint> PointOf(IUnknown* object, const IID& events) {
  const auto container = Query<IConnectionPointContainer>(object);
  if (!container) throw ComFailure(E_NOINTERFACE);
  ComPtr<IConnectionPoint> point;
  Check(container->FindConnectionPoint(events, point.Put()));
  return point;
}

IID EventsOf(IConnectionPoint& point) {
  IID events{};
  Check(point.GetConnectionInterface(&events));
  return events;
}

}  // namespace

/// It answers the source interface, whatever that is.
class EventSink::Listener : public Implements<IDispatch> {
 public:
  Listener(const IID& events, Handler handler) : handler_(std::move(handler)) {
    AddInterface(events, static_cast<IDispatch*>(this));
  }
  /// Also for a source that forgets to let go of it.
  void End() { handler_ = {}; }

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    return Guarded(IID_IDispatch, [&] { Out(count) = 0; });
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    return Guarded(IID_IDispatch, [&] {
      const Handler handler = handler_;  // it may end the sink
      return handler ? handler(event, Out(arguments)) : S_OK;
    });
  }

 private:
  Handler handler_;
};

EventSink::EventSink(IUnknown* object, const IID& events, Handler handler)
    : EventSink(PointOf(object, events), events, std::move(handler)) {}

EventSink::EventSink(const ComPtr<IConnectionPoint>& point, Handler handler)
    : EventSink(point, EventsOf(*point.Get()), std::move(handler)) {}

EventSink::EventSink(ComPtr<IConnectionPoint> point, const IID& events, Handler handler)
    : point_(std::move(point)), listener_(Make<Listener>(events, std::move(handler))) {
  Check(point_->Advise(listener_.Get(), &cookie_));
}

EventSink::~EventSink() {
  listener_->End();
  static_cast<void>(point_->Unadvise(cookie_));
}

}  // namespace tavrix::com
