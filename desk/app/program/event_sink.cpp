#include "app/program/event_sink.h"

#include "app/com/object.h"
#include "app/com/values.h"
#include "component/base/failure.h"
#include "tavrix.h"

namespace desk::app {
namespace {

using tavrix::component::Check;
using tavrix::component::ComFailure;
using tavrix::component::ViewOf;

constexpr DISPID kMessage = 1;
constexpr DISPID kErrMessage = 2;

std::wstring TextAt(const DISPPARAMS& parameters, UINT from_end) {
  const Variant text = Variant(parameters.rgvarg[from_end]).As(VT_BSTR);
  return std::wstring(ViewOf(text.Get().bstrVal));
}

class Listener : public ComObject<IDispatch> {
 public:
  explicit Listener(ViewEvents events) : events_(std::move(events)) {}

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
    return Guarded([&] { return Hear(member, *parameters); });
  }

 private:
  [[nodiscard]] void* InterfaceOf(REFIID iid) override {
    if (iid == __uuidof(__Kjkm)) return static_cast<IDispatch*>(this);
    return ComObject::InterfaceOf(iid);
  }

  /// Arguments stand last first.
  HRESULT Hear(DISPID member, const DISPPARAMS& parameters) {
    if (member == kMessage && parameters.cArgs == 1) {
      events_.message(TextAt(parameters, 0));
      return S_OK;
    }
    if (member == kErrMessage && parameters.cArgs == 3) {
      const Variant level = Variant(parameters.rgvarg[1]).As(VT_I4);
      events_.report(TextAt(parameters, 2), level.Get().lVal, TextAt(parameters, 0));
      return S_OK;
    }
    return DISP_E_MEMBERNOTFOUND;
  }

  ViewEvents events_;
};

}  // namespace

EventSink::EventSink(IUnknown* view, ViewEvents events) {
  const auto container = Query<IConnectionPointContainer>(view);
  if (!container) throw ComFailure(E_NOINTERFACE);
  Check(container->FindConnectionPoint(__uuidof(__Kjkm), point_.Put()));
  const auto listener = MakeObject<Listener>(std::move(events));
  Check(point_->Advise(listener.Get(), &cookie_));
}

EventSink::~EventSink() {
  point_->Unadvise(cookie_);
}

}  // namespace desk::app
