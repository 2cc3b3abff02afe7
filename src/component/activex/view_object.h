#pragma once

#include <windows.h>

#include <oleidl.h>

#include "com/com_ptr.h"
#include "component/activex/of_control.h"

namespace tavrix::component {

/// Draws the control, also while it has no window.
class ViewObject : public OfControl<com::InterfaceImpl<IViewObject2>> {
 public:
  using OfControl::OfControl;

  STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspect_info, DVTARGETDEVICE* device,
                    HDC device_dc, HDC dc, LPCRECTL bounds, LPCRECTL metafile_bounds,
                    WINBOOL(CALLBACK* go_on)(ULONG_PTR), ULONG_PTR token) noexcept override;
  STDMETHODIMP GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC,
                           LOGPALETTE**) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Freeze(DWORD, LONG, void*, DWORD*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Unfreeze(DWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) noexcept override;
  STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) noexcept override;
  STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device,
                         LPSIZEL result) noexcept override;

 private:
  void DrawWithoutWindow(HDC dc, const RECT& area);

  com::ComPtr<IAdviseSink>
      sink_;  // asked for and given back; a control with a window repaints itself
  DWORD aspects_ = 0;
  DWORD flags_ = 0;
};

}  // namespace tavrix::component
