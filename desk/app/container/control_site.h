#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include "app/com.h"
#include "app/container/in_place_frame.h"

namespace desk::app {

/// The site of the one control of a container, with its ambient properties.
class ControlSite
    : public tavrix::com::Implements<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch> {
 public:
  ControlSite(const ContainerPlan& plan, ComPtr<InPlaceFrame> frame);

  /// The control that stands here; the site must not keep it alive.
  void SetControl(IOleObject* control) { control_ = control; }
  [[nodiscard]] HWND ControlWindow() const;
  [[nodiscard]] const ComPtr<IOleInPlaceObject>& InPlace() const { return in_place_; }
  void Retire();

  // IOleClientSite
  STDMETHODIMP SaveObject() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) noexcept override;
  STDMETHODIMP GetContainer(IOleContainer** container) noexcept override;
  STDMETHODIMP ShowObject() noexcept override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() noexcept override { return E_NOTIMPL; }
  // IOleWindow
  STDMETHODIMP GetWindow(HWND* window) noexcept override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
  // IOleInPlaceSite
  STDMETHODIMP CanInPlaceActivate() noexcept override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() noexcept override;
  STDMETHODIMP OnUIActivate() noexcept override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                RECT* position, RECT* clip,
                                OLEINPLACEFRAMEINFO* info) noexcept override;
  STDMETHODIMP Scroll(SIZE) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() noexcept override;
  STDMETHODIMP DiscardUndoState() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(const RECT* place) noexcept override;
  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() noexcept override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch** control) noexcept override;
  STDMETHODIMP TransformCoords(POINTL* himetric, POINTF* container, DWORD flags) noexcept override;
  STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) noexcept override;
  STDMETHODIMP OnFocus(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() noexcept override { return E_NOTIMPL; }
  // IDispatch: ambient properties, asked for by number
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override;
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept override;

 private:
  [[nodiscard]] HRESULT Ambient(DISPID member, VARIANT& result) const;

  ContainerPlan plan_;
  ComPtr<InPlaceFrame> frame_;
  ComPtr<IOleInPlaceObject> in_place_;
  IOleObject* control_ = nullptr;
};

}  // namespace desk::app
