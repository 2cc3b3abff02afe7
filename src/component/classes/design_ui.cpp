#include "component/classes/design_ui.h"

#include "component/activex/active_control.h"
#include "component/adapters/host_objects.h"
#include "component/base/abi.h"

namespace tavrix::component {

DesignUi::DesignUi(ActiveControl& control, host::IDesignUI& view)
    : DualFace(control), control_(control), view_(view) {}

HRESULT DesignUi::get_Controls(IDispatch** result) noexcept {
  return Guarded(IID_IDesignUI, [&] {
    Out(result) = nullptr;
    *result = control_.Children().Collection().Detach();
  });
}

HRESULT DesignUi::get_Parameters(IDispatch** result) noexcept {
  return Guarded(IID_IDesignUI, [&] { Out(result) = nullptr; });
}

HRESULT DesignUi::putref_Parameters(IDispatch* parameters) noexcept {
  return Guarded(IID_IDesignUI, [&] {
    const ComPtr<IUnknown> keep(&control_.Controlling());
    view_.SetParameters(AdaptParameters(ComPtr<IDispatch>(parameters), control_.Owner()));
  });
}

}  // namespace tavrix::component
