#include "app/container/in_place_frame.h"

namespace desk::app {

void InPlaceFrame::Retire() {
  plan_ = {};
  active_ = {};
}

void* InPlaceFrame::InterfaceOf(REFIID iid) {
  if (iid == IID_IOleWindow || iid == IID_IOleInPlaceUIWindow) {
    return static_cast<IOleInPlaceFrame*>(this);
  }
  return ComObject::InterfaceOf(iid);
}

STDMETHODIMP InPlaceFrame::GetWindow(HWND* window) {
  if (window == nullptr) return E_POINTER;
  *window = plan_.frame;
  return plan_.frame != nullptr ? S_OK : E_FAIL;
}

STDMETHODIMP InPlaceFrame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) {
  active_ = ComPtr<IOleInPlaceActiveObject>(object);
  return S_OK;
}

STDMETHODIMP InPlaceFrame::SetStatusText(LPCOLESTR text) {
  if (plan_.status_text) plan_.status_text(text != nullptr ? text : L"");
  return S_OK;
}

STDMETHODIMP InPlaceFrame::EnableModeless(BOOL enable) {
  if (plan_.modeless) plan_.modeless(enable != FALSE);
  return S_OK;
}

}  // namespace desk::app
