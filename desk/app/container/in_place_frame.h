#pragma once

#include <windows.h>

#include <oleidl.h>

#include "app/com.h"
#include "app/container/control_container.h"

namespace desk::app {

/// The frame as an active control sees it: status text, and which object gets keys first. A control
/// has no room for tools or menus of its own here.
class InPlaceFrame : public tavrix::com::Implements<IOleInPlaceFrame> {
 public:
  explicit InPlaceFrame(const ContainerPlan& plan);

  [[nodiscard]] const ComPtr<IOleInPlaceActiveObject>& Active() const { return active_; }
  /// The container ends: calls that still come do nothing.
  void Retire();

  // IOleWindow
  STDMETHODIMP GetWindow(HWND* window) noexcept override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
  // IOleInPlaceUIWindow
  STDMETHODIMP GetBorder(RECT*) noexcept override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP RequestBorderSpace(const BORDERWIDTHS*) noexcept override {
    return INPLACE_E_NOTOOLSPACE;
  }
  STDMETHODIMP SetBorderSpace(const BORDERWIDTHS*) noexcept override { return S_OK; }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR name) noexcept override;
  // IOleInPlaceFrame
  STDMETHODIMP InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) noexcept override { return S_OK; }
  STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) noexcept override { return S_OK; }
  STDMETHODIMP RemoveMenus(HMENU) noexcept override { return S_OK; }
  STDMETHODIMP SetStatusText(LPCOLESTR text) noexcept override;
  STDMETHODIMP EnableModeless(BOOL enable) noexcept override;
  STDMETHODIMP TranslateAccelerator(MSG*, WORD) noexcept override { return S_FALSE; }

 private:
  ContainerPlan plan_;
  ComPtr<IOleInPlaceActiveObject> active_;
};

}  // namespace desk::app
