#pragma once

#include <windows.h>

#include <oleidl.h>

#include "component/base/identity.h"

namespace tavrix::component {

class ActiveControl;

/// IOleInPlaceObject, and with it IOleWindow.
class OleInPlaceObject : public Face<IOleInPlaceObject> {
 public:
  explicit OleInPlaceObject(ActiveControl& control);

  STDMETHODIMP GetWindow(HWND* result) noexcept override;
  STDMETHODIMP ContextSensitiveHelp(WINBOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP InPlaceDeactivate() noexcept override;
  STDMETHODIMP UIDeactivate() noexcept override;
  STDMETHODIMP SetObjectRects(LPCRECT position, LPCRECT clip) noexcept override;
  STDMETHODIMP ReactivateAndUndo() noexcept override { return INPLACE_E_NOTUNDOABLE; }

 private:
  ActiveControl& control_;
};

}  // namespace tavrix::component
