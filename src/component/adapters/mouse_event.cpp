#include "component/adapters/mouse_event.h"

#include <windows.h>

#include <ocidl.h>

#include "component/adapters/adapted.h"
#include "component/adapters/values.h"
#include "component/base/abi.h"
#include "component/base/failure.h"
#include "component/base/identity.h"
#include "host/calls.h"
#include "qnSystem.h"

namespace tavrix::component {

namespace {

using WheelHandler = std::function<void(std::int32_t)>;
constexpr DISPID kWheel = 1;

/// The interface through which an object raises its events by default, as far as it tells.
IID DefaultSourceOf(IUnknown* object) {
  GUID source{};
  const auto info = Query<IProvideClassInfo2>(object);
  if (info && SUCCEEDED(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source))) return source;
  return DIID_IHostMouseEvents;
}

ComPtr<IConnectionPoint> WheelPointOf(IUnknown* object) {
  const auto container = Query<IConnectionPointContainer>(object);
  ComPtr<IConnectionPoint> point;
  if (!container) return point;
  if (SUCCEEDED(container->FindConnectionPoint(DefaultSourceOf(object), point.Put()))) return point;
  // Neither told nor ours: then the first one it has.
  ComPtr<IEnumConnectionPoints> points;
  if (FAILED(container->EnumConnectionPoints(points.Put()))) return nullptr;
  static_cast<void>(points->Next(1, point.Put(), nullptr));
  return point;
}

/// Receives the event. It answers the source interface, whatever that is.
class WheelSink : public Identity, public Face<IDispatch> {
 public:
  WheelSink(const IID& source, std::shared_ptr<WheelHandler> handler)
      : Face<IDispatch>(static_cast<Identity&>(*this)), handler_(std::move(handler)) {
    Publish(IID_IDispatch, this);
    Publish(source, this);
  }
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    return Guarded(IID_IDispatch, [&] { Out(count) = 0; });
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    return Guarded(IID_IDispatch, [&] {
      if (id != kWheel) return DISP_E_MEMBERNOTFOUND;
      if (Out(arguments).cArgs != 1) return DISP_E_BADPARAMCOUNT;
      const auto handler = handler_;  // the handler may end the connection
      if (*handler) (*handler)(ToValue(Variant(arguments->rgvarg[0])).ToLong());
      return S_OK;
    });
  }

 private:
  std::shared_ptr<WheelHandler> handler_;
};

class AutomationMouseEvent : public Adapted<host::MouseEvent, IHostMouseEvent> {
 public:
  AutomationMouseEvent(ComPtr<IDispatch> object, SharedOwner owner)
      : Adapted(std::move(object)), owner_(std::move(owner)) {}
  ~AutomationMouseEvent() override { Disconnect(); }

  // Not every language has optional arguments: a source may take one alone, or want both.
  void SetRange(std::int32_t maximum) override {
    CallEither({Variant(maximum)}, {Variant(maximum), Variant(std::int32_t{0})});
  }
  void SetRange(std::int32_t maximum, std::int32_t first_row) override {
    CallEither({Variant(maximum), Variant(first_row)}, {Variant(maximum)});
  }
  void Attach(std::intptr_t window) override {
    // Handles keep to 32 bits, on x64 too.
    Object().Call(L"Attach", {Variant(static_cast<std::int32_t>(window))});
  }
  void Detach() override {
    if (!owner_->Ended() || !Object().IsOfScript()) Object().Call(L"Detach");
  }
  [[nodiscard]] std::intptr_t AttachedTo() override {
    const host::Value window = ToValue(Object().Get(L"AttachedTo"));
    return host::NoObject(window, "AttachedTo").ToLong();  // Empty: to none yet
  }
  void SetPosition(std::int32_t position) override { Object().Put(L"Position", Variant(position)); }
  void OnWheel(WheelHandler handler) override {
    Disconnect();
    if (handler) Connect(std::move(handler));
  }

 private:
  void CallEither(LateObject::Values wanted, LateObject::Values other) const {
    try {
      Object().Call(L"SetRange", wanted);
    } catch (const ComFailure& failure) {
      if (!IsArgumentCount(failure)) throw;
      Object().Call(L"SetRange", other);
    }
  }
  void Connect(WheelHandler handler) {
    point_ = WheelPointOf(Object().Dispatch().Get());
    IID source{};
    if (!point_ || FAILED(point_->GetConnectionInterface(&source))) return;
    handler_ = std::make_shared<WheelHandler>(
        [owner = owner_, handler = std::move(handler)](std::int32_t value) {
          const ComPtr<IUnknown> keep = owner->Keep();  // the host may let go of it meanwhile
          handler(value);
        });
    const auto sink = MakeObject<WheelSink>(source, handler_);
    if (FAILED(point_->Advise(sink.Get(), &cookie_))) point_ = nullptr;
  }
  void Disconnect() {
    if (handler_) *handler_ = {};  // also for a source that forgets to let go of its sink
    handler_.reset();
    if (point_) static_cast<void>(point_->Unadvise(cookie_));
    point_ = nullptr;
  }

  SharedOwner owner_;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
  std::shared_ptr<WheelHandler> handler_;
};

}  // namespace

std::shared_ptr<host::MouseEvent> AdaptMouseEvent(const ComPtr<IDispatch>& object,
                                                  SharedOwner owner) {
  return Adapt<AutomationMouseEvent>(object, std::move(owner));
}

}  // namespace tavrix::component
