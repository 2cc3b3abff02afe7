#pragma once

#include <windows.h>

#include <oleidl.h>

#include "app/com/object.h"
#include "app/container/control_container.h"

namespace desk::app {

/// The frame as an active control sees it: status text, and which object gets keys first. A control
/// has no room for tools or menus of its own here.
class InPlaceFrame : public ComObject<IOleInPlaceFrame> {
 public:
  explicit InPlaceFrame(const ContainerPlan& plan) : plan_(plan) {}

  [[nodiscard]] const ComPtr<IOleInPlaceActiveObject>& Active() const { return active_; }
  /// The container ends: calls that still come do nothing.
  void Retire();

  // IOleWindow
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  // IOleInPlaceUIWindow
  STDMETHODIMP GetBorder(RECT*) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP RequestBorderSpace(const BORDERWIDTHS*) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP SetBorderSpace(const BORDERWIDTHS*) override { return S_OK; }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR name) override;
  // IOleInPlaceFrame
  STDMETHODIMP InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) override { return S_OK; }
  STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
  STDMETHODIMP RemoveMenus(HMENU) override { return S_OK; }
  STDMETHODIMP SetStatusText(LPCOLESTR text) override;
  STDMETHODIMP EnableModeless(BOOL enable) override;
  STDMETHODIMP TranslateAccelerator(MSG*, WORD) override { return S_FALSE; }

 private:
  [[nodiscard]] void* InterfaceOf(REFIID iid) override;

  ContainerPlan plan_;
  ComPtr<IOleInPlaceActiveObject> active_;
};

}  // namespace desk::app
