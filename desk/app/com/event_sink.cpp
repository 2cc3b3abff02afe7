#include "app/com/event_sink.h"

#include "app/com/object.h"
#include "app/com/values.h"
#include "component/base/failure.h"

namespace desk::app {
namespace {

using tavrix::component::Check;
using tavrix::component::ComFailure;

class Listener : public ComObject<IDispatch> {
 public:
  Listener(const IID& events, EventSink::Hear hear) : events_(events), hear_(std::move(hear)) {}

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                      EXCEPINFO*, UINT*) override {
    if (parameters == nullptr) return E_POINTER;
    return Guarded([&] { return hear_(member, *parameters); });
  }

 private:
  [[nodiscard]] void* InterfaceOf(REFIID iid) override {
    if (iid == events_) return static_cast<IDispatch*>(this);
    return ComObject::InterfaceOf(iid);
  }

  IID events_;
  EventSink::Hear hear_;
};

}  // namespace

EventSink::EventSink(IUnknown* object, const IID& events, Hear hear) {
  const auto container = Query<IConnectionPointContainer>(object);
  if (!container) throw ComFailure(E_NOINTERFACE);
  Check(container->FindConnectionPoint(events, point_.Put()));
  const auto listener = MakeObject<Listener>(events, std::move(hear));
  Check(point_->Advise(listener.Get(), &cookie_));
}

EventSink::~EventSink() {
  point_->Unadvise(cookie_);
}

}  // namespace desk::app
