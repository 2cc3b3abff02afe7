#pragma once

#include <windows.h>

#include <oleidl.h>

#include "component/activex/of_control.h"

namespace tavrix::component {

/// The frame's way to the control that is active for the user: its keys come through here.
class OleInPlaceActiveObject : public OfControl<com::InterfaceImpl<IOleInPlaceActiveObject>> {
 public:
  using OfControl::OfControl;

  STDMETHODIMP GetWindow(HWND* result) noexcept override;
  STDMETHODIMP ContextSensitiveHelp(WINBOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(LPMSG message) noexcept override;
  STDMETHODIMP OnFrameWindowActivate(WINBOOL) noexcept override { return S_OK; }
  STDMETHODIMP OnDocWindowActivate(WINBOOL) noexcept override { return S_OK; }
  STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, WINBOOL) noexcept override {
    return S_OK;
  }
  STDMETHODIMP EnableModeless(WINBOOL) noexcept override { return S_OK; }
};

}  // namespace tavrix::component
