#pragma once

#include "component/activex/of_control.h"
#include "host/forms.h"
#include "qnDesignUI.h"

namespace tavrix::component {

/// IDesignUI for callers, on a view's own.
class DesignUi : public OfControl<com::DualInterfaceImpl<IDesignUI>> {
 public:
  DesignUi(ActiveControl& control, host::IDesignUI& view) : OfControl(control), view_(view) {}

  STDMETHODIMP get_Controls(IDispatch** result) noexcept override;
  STDMETHODIMP get_Parameters(IDispatch** result) noexcept override;
  STDMETHODIMP putref_Parameters(IDispatch* parameters) noexcept override;

 private:
  host::IDesignUI& view_;
};

}  // namespace tavrix::component
