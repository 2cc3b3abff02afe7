#include "app/container/in_place_frame.h"

namespace desk::app {

InPlaceFrame::InPlaceFrame(const ContainerPlan& plan) : plan_(plan) {
  for (const IID& iid : {IID_IOleWindow, IID_IOleInPlaceUIWindow}) {
    AddInterface(iid, static_cast<IOleInPlaceFrame*>(this));
  }
}

void InPlaceFrame::Retire() {
  plan_ = {};
  active_ = {};
}

STDMETHODIMP InPlaceFrame::GetWindow(HWND* window) noexcept {
  if (window == nullptr) return E_POINTER;
  *window = plan_.frame;
  return plan_.frame != nullptr ? S_OK : E_FAIL;
}

STDMETHODIMP InPlaceFrame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) noexcept {
  active_ = ComPtr<IOleInPlaceActiveObject>(object);
  return S_OK;
}

STDMETHODIMP InPlaceFrame::SetStatusText(LPCOLESTR text) noexcept {
  if (plan_.status_text) plan_.status_text(text != nullptr ? text : L"");
  return S_OK;
}

STDMETHODIMP InPlaceFrame::EnableModeless(BOOL enable) noexcept {
  if (plan_.modeless) plan_.modeless(enable != FALSE);
  return S_OK;
}

}  // namespace desk::app
