#pragma once

#include "component/base/identity.h"
#include "host/forms.h"
#include "qnDesignUI.h"

namespace tavrix::component {

class ActiveControl;

/// IDesignUI for callers, on a view's own.
class DesignUi : public DualFace<IDesignUI> {
 public:
  DesignUi(ActiveControl& control, host::IDesignUI& view);

  STDMETHODIMP get_Controls(IDispatch** result) noexcept override;
  STDMETHODIMP get_Parameters(IDispatch** result) noexcept override;
  STDMETHODIMP putref_Parameters(IDispatch* parameters) noexcept override;

 private:
  ActiveControl& control_;
  host::IDesignUI& view_;
};

}  // namespace tavrix::component
