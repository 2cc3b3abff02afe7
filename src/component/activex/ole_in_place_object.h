#pragma once

#include <windows.h>

#include <oleidl.h>

#include "component/activex/of_control.h"

namespace tavrix::component {

/// IOleInPlaceObject, and with it IOleWindow.
class OleInPlaceObject : public OfControl<com::InterfaceImpl<IOleInPlaceObject>> {
 public:
  using OfControl::OfControl;

  STDMETHODIMP GetWindow(HWND* result) noexcept override;
  STDMETHODIMP ContextSensitiveHelp(WINBOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP InPlaceDeactivate() noexcept override;
  STDMETHODIMP UIDeactivate() noexcept override;
  STDMETHODIMP SetObjectRects(LPCRECT position, LPCRECT clip) noexcept override;
  STDMETHODIMP ReactivateAndUndo() noexcept override { return INPLACE_E_NOTUNDOABLE; }
};

}  // namespace tavrix::component
