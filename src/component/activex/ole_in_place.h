#pragma once

#include <windows.h>

#include <oleidl.h>

#include "component/activex/of_control.h"

namespace tavrix::component {

/// S_OK with the window of the placed control; E_FAIL while it has none.
[[nodiscard]] HRESULT GiveWindow(ActiveControl& control, HWND& result);

/// An interface that begins with IOleWindow.
template <class Interface>
class OleWindow : public OfControl<com::InterfaceImpl<Interface>> {
 public:
  using OfControl<com::InterfaceImpl<Interface>>::OfControl;

  STDMETHODIMP GetWindow(HWND* result) noexcept override {
    return com::Guarded(__uuidof(Interface),
                        [&] { return GiveWindow(this->Control(), com::Out(result)); });
  }
  STDMETHODIMP ContextSensitiveHelp(WINBOOL) noexcept override { return E_NOTIMPL; }
};

class OleInPlaceObject : public OleWindow<IOleInPlaceObject> {
 public:
  using OleWindow::OleWindow;

  STDMETHODIMP InPlaceDeactivate() noexcept override;
  STDMETHODIMP UIDeactivate() noexcept override;
  STDMETHODIMP SetObjectRects(LPCRECT position, LPCRECT clip) noexcept override;
  STDMETHODIMP ReactivateAndUndo() noexcept override { return INPLACE_E_NOTUNDOABLE; }
};

/// The frame's way to the control that is active for the user: its keys come through here.
class OleInPlaceActiveObject : public OleWindow<IOleInPlaceActiveObject> {
 public:
  using OleWindow::OleWindow;

  STDMETHODIMP TranslateAccelerator(LPMSG message) noexcept override;
  STDMETHODIMP OnFrameWindowActivate(WINBOOL) noexcept override { return S_OK; }
  STDMETHODIMP OnDocWindowActivate(WINBOOL) noexcept override { return S_OK; }
  STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, WINBOOL) noexcept override {
    return S_OK;
  }
  STDMETHODIMP EnableModeless(WINBOOL) noexcept override { return S_OK; }
};

}  // namespace tavrix::component
