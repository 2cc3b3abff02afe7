#pragma once

#include <windows.h>

#include <ocidl.h>

#include "component/base/identity.h"

namespace tavrix::component {

class ActiveControl;

class OleControl : public Face<IOleControl> {
 public:
  explicit OleControl(ActiveControl& control);

  STDMETHODIMP GetControlInfo(CONTROLINFO* result) noexcept override;
  STDMETHODIMP OnMnemonic(LPMSG) noexcept override { return S_OK; }
  STDMETHODIMP OnAmbientPropertyChange(DISPID id) noexcept override;
  STDMETHODIMP FreezeEvents(WINBOOL freeze) noexcept override;

 private:
  ActiveControl& control_;
};

}  // namespace tavrix::component
