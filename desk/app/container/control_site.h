#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include "app/com/object.h"
#include "app/container/in_place_frame.h"

namespace desk::app {

/// The site of the one control of a container, with its ambient properties.
class ControlSite : public ComObject<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch> {
 public:
  ControlSite(const ContainerPlan& plan, ComPtr<InPlaceFrame> frame);

  /// The control that stands here; the site must not keep it alive.
  void SetControl(IOleObject* control) { control_ = control; }
  [[nodiscard]] HWND ControlWindow() const;
  [[nodiscard]] const ComPtr<IOleInPlaceObject>& InPlace() const { return in_place_; }
  void Retire();

  // IOleClientSite
  STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
  STDMETHODIMP GetContainer(IOleContainer** container) override;
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
  // IOleWindow
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  // IOleInPlaceSite
  STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() override;
  STDMETHODIMP OnUIActivate() override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                RECT* position, RECT* clip, OLEINPLACEFRAMEINFO* info) override;
  STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() override;
  STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(const RECT* place) override;
  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch** control) override;
  STDMETHODIMP TransformCoords(POINTL* himetric, POINTF* container, DWORD flags) override;
  STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) override;
  STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }
  // IDispatch: ambient properties, asked for by number
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override;
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* argument) override;

 private:
  [[nodiscard]] void* InterfaceOf(REFIID iid) override;
  [[nodiscard]] HRESULT Ambient(DISPID member, VARIANT& result) const;

  ContainerPlan plan_;
  ComPtr<InPlaceFrame> frame_;
  ComPtr<IOleInPlaceObject> in_place_;
  IOleObject* control_ = nullptr;
};

}  // namespace desk::app
