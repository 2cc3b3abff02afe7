#include "component/adapters/mouse_event.h"

#include <windows.h>

#include <ocidl.h>

#include <optional>

#include "com/abi.h"
#include "com/event_sink.h"
#include "com/failure.h"
#include "com/values.h"
#include "component/adapters/adapted.h"
#include "host/calls.h"
#include "qnSystem.h"

namespace tavrix::component {

namespace {

using WheelHandler = std::function<void(std::int32_t)>;
constexpr DISPID kWheel = 1;

/// The interface through which an object raises its events by default, as far as it tells.
IID DefaultSourceOf(IUnknown* object) {
  GUID source{};
  const auto info = com::Query<IProvideClassInfo2>(object);
  if (info && SUCCEEDED(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source))) return source;
  return DIID_IHostMouseEvents;
}

com::ComPtr<IConnectionPoint> WheelPointOf(IUnknown* object) {
  const auto container = com::Query<IConnectionPointContainer>(object);
  com::ComPtr<IConnectionPoint> point;
  if (!container) return point;
  if (SUCCEEDED(container->FindConnectionPoint(DefaultSourceOf(object), point.Put()))) return point;
  // Neither told nor ours: then the first one it has.
  com::ComPtr<IEnumConnectionPoints> points;
  if (FAILED(container->EnumConnectionPoints(points.Put()))) return nullptr;
  static_cast<void>(points->Next(1, point.Put(), nullptr));
  return point;
}

class AutomationMouseEvent : public Adapted<host::MouseEvent, IHostMouseEvent> {
 public:
  AutomationMouseEvent(com::ComPtr<IDispatch> object, SharedOwner owner)
      : Adapted(std::move(object)), owner_(std::move(owner)) {}

  // Not every language has optional arguments: a source may take one alone, or want both.
  void SetRange(std::int32_t maximum) override {
    CallEither({com::Variant(maximum)}, {com::Variant(maximum), com::Variant(std::int32_t{0})});
  }
  void SetRange(std::int32_t maximum, std::int32_t first_row) override {
    CallEither({com::Variant(maximum), com::Variant(first_row)}, {com::Variant(maximum)});
  }
  void Attach(std::intptr_t window) override {
    // Handles keep to 32 bits, on x64 too.
    Object().Call(L"Attach", {com::Variant(static_cast<std::int32_t>(window))});
  }
  void Detach() override {
    if (!owner_->Ended() || !Object().IsOfScript()) Object().Call(L"Detach");
  }
  [[nodiscard]] std::intptr_t AttachedTo() override {
    const host::Value window = com::ToValue(Object().Get(L"AttachedTo"));
    return host::NoObject(window, "AttachedTo").ToLong();  // Empty: to none yet
  }
  void SetPosition(std::int32_t position) override {
    Object().Put(L"Position", com::Variant(position));
  }
  void OnWheel(WheelHandler handler) override {
    sink_.reset();
    if (handler) Connect(std::move(handler));
  }

 private:
  void CallEither(com::LateObject::Values wanted, com::LateObject::Values other) const {
    try {
      Object().Call(L"SetRange", wanted);
    } catch (const com::ComFailure& failure) {
      if (!com::IsArgumentCount(failure)) throw;
      Object().Call(L"SetRange", other);
    }
  }
  void Connect(WheelHandler handler) {
    const auto point = WheelPointOf(Object().Dispatch().Get());
    if (!point) return;
    try {
      sink_.emplace(point, [owner = owner_, handler = std::move(handler)](
                               DISPID event, const DISPPARAMS& arguments) {
        if (event != kWheel) return DISP_E_MEMBERNOTFOUND;
        if (arguments.cArgs != 1) return DISP_E_BADPARAMCOUNT;
        const com::ComPtr<IUnknown> keep = owner->Keep();  // the host may let go of it meanwhile
        handler(com::ToValue(com::Variant(arguments.rgvarg[0])).ToLong());
        return S_OK;
      });
    } catch (const com::ComFailure&) {  // it takes no listeners: then nobody hears the wheel
    }
  }

  SharedOwner owner_;
  std::optional<com::EventSink> sink_;
};

}  // namespace

std::shared_ptr<host::MouseEvent> AdaptMouseEvent(const com::ComPtr<IDispatch>& object,
                                                  SharedOwner owner) {
  return Adapt<AutomationMouseEvent>(object, std::move(owner));
}

}  // namespace tavrix::component
