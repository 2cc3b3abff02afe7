#pragma once

#include <windows.h>

#include <oleidl.h>

#include "component/base/identity.h"

namespace tavrix::component {

class ActiveControl;

/// The frame's way to the control that is active for the user: its keys come through here.
class OleInPlaceActiveObject : public Face<IOleInPlaceActiveObject> {
 public:
  explicit OleInPlaceActiveObject(ActiveControl& control);

  STDMETHODIMP GetWindow(HWND* result) noexcept override;
  STDMETHODIMP ContextSensitiveHelp(WINBOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(LPMSG message) noexcept override;
  STDMETHODIMP OnFrameWindowActivate(WINBOOL) noexcept override { return S_OK; }
  STDMETHODIMP OnDocWindowActivate(WINBOOL) noexcept override { return S_OK; }
  STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, WINBOOL) noexcept override {
    return S_OK;
  }
  STDMETHODIMP EnableModeless(WINBOOL) noexcept override { return S_OK; }

 private:
  ActiveControl& control_;
};

}  // namespace tavrix::component
