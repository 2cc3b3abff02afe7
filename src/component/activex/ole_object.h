#pragma once

#include <windows.h>

#include <oleidl.h>

#include "com/com_ptr.h"
#include "component/activex/of_control.h"

namespace tavrix::component {

/// What containers are told of the controls' behaviour, in the registry and by the objects: they
/// are sized by their container, live inside it, are active while visible, and take their site
/// before their state.
inline constexpr DWORD kMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE |
                                     OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                     OLEMISC_SETCLIENTSITEFIRST;

class OleObject : public OfControl<com::InterfaceImpl<IOleObject>> {
 public:
  using OfControl::OfControl;

  STDMETHODIMP SetClientSite(IOleClientSite* site) noexcept override;
  STDMETHODIMP GetClientSite(IOleClientSite** result) noexcept override;
  STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) noexcept override { return S_OK; }
  STDMETHODIMP Close(DWORD save) noexcept override;
  STDMETHODIMP SetMoniker(DWORD, IMoniker*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP InitFromData(IDataObject*, WINBOOL, DWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetClipboardData(DWORD, IDataObject**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DoVerb(LONG verb, LPMSG message, IOleClientSite* site, LONG index, HWND parent,
                      LPCRECT position) noexcept override;
  STDMETHODIMP EnumVerbs(IEnumOLEVERB** result) noexcept override;
  STDMETHODIMP Update() noexcept override { return S_OK; }
  STDMETHODIMP IsUpToDate() noexcept override { return S_OK; }
  STDMETHODIMP GetUserClassID(CLSID* result) noexcept override;
  STDMETHODIMP GetUserType(DWORD form, LPOLESTR* result) noexcept override;
  STDMETHODIMP SetExtent(DWORD aspect, SIZEL* size) noexcept override;
  STDMETHODIMP GetExtent(DWORD aspect, SIZEL* result) noexcept override;
  STDMETHODIMP Advise(IAdviseSink* sink, DWORD* cookie) noexcept override;
  STDMETHODIMP Unadvise(DWORD cookie) noexcept override;
  STDMETHODIMP EnumAdvise(IEnumSTATDATA** result) noexcept override;
  STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* result) noexcept override;
  STDMETHODIMP SetColorScheme(LOGPALETTE*) noexcept override { return E_NOTIMPL; }

 private:
  com::ComPtr<IOleAdviseHolder> advised_;
};

}  // namespace tavrix::component
