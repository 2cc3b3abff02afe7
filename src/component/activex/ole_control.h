#pragma once

#include <windows.h>

#include <ocidl.h>

#include "component/activex/of_control.h"

namespace tavrix::component {

class OleControl : public OfControl<com::InterfaceImpl<IOleControl>> {
 public:
  using OfControl::OfControl;

  STDMETHODIMP GetControlInfo(CONTROLINFO* result) noexcept override;
  STDMETHODIMP OnMnemonic(LPMSG) noexcept override { return S_OK; }
  STDMETHODIMP OnAmbientPropertyChange(DISPID id) noexcept override;
  STDMETHODIMP FreezeEvents(WINBOOL freeze) noexcept override;
};

}  // namespace tavrix::component
