#include "component/classes/design_ui.h"

#include "com/abi.h"
#include "component/activex/active_control.h"
#include "component/adapters/host_objects.h"

namespace tavrix::component {

HRESULT DesignUi::get_Controls(IDispatch** result) noexcept {
  return com::Guarded(IID_IDesignUI, [&] {
    com::Out(result) = nullptr;
    *result = Control().Children().Collection().Detach();
  });
}

HRESULT DesignUi::get_Parameters(IDispatch** result) noexcept {
  return com::Guarded(IID_IDesignUI, [&] { com::Out(result) = nullptr; });
}

HRESULT DesignUi::putref_Parameters(IDispatch* parameters) noexcept {
  return com::Guarded(IID_IDesignUI, [&] {
    const com::ComPtr<IUnknown> keep(&Control().ControllingUnknown());
    view_.SetParameters(AdaptParameters(com::ComPtr<IDispatch>(parameters), Control().Owner()));
  });
}

}  // namespace tavrix::component
