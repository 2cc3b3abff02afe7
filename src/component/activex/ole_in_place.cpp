#include "component/activex/ole_in_place.h"

#include "com/abi.h"
#include "component/activex/active_control.h"

namespace tavrix::component {

namespace {

/// Modifier keys as a control site counts them.
DWORD KeyModifiers() {
  constexpr DWORD kShift = 1;
  constexpr DWORD kControl = 2;
  constexpr DWORD kAlt = 4;
  return (GetKeyState(VK_SHIFT) < 0 ? kShift : 0) | (GetKeyState(VK_CONTROL) < 0 ? kControl : 0) |
         (GetKeyState(VK_MENU) < 0 ? kAlt : 0);
}

}  // namespace

HRESULT GiveWindow(ActiveControl& control, HWND& result) {
  const auto* window = control.Placement().Window();
  result = window == nullptr ? nullptr : window->Handle();
  return result == nullptr ? E_FAIL : S_OK;
}

HRESULT OleInPlaceObject::InPlaceDeactivate() noexcept {
  return com::Guarded(IID_IOleInPlaceObject, [&] { Control().Placement().Deactivate(); });
}

HRESULT OleInPlaceObject::UIDeactivate() noexcept {
  return com::Guarded(IID_IOleInPlaceObject, [&] { Control().Placement().UiDeactivate(); });
}

HRESULT OleInPlaceObject::SetObjectRects(LPCRECT position, LPCRECT clip) noexcept {
  return com::Guarded(IID_IOleInPlaceObject, [&] {
    // Some containers give no clipping rectangle.
    Control().Placement().Place(com::Out(position), clip == nullptr ? *position : *clip);
  });
}

HRESULT OleInPlaceActiveObject::TranslateAccelerator(LPMSG message) noexcept {
  return com::Guarded(IID_IOleInPlaceActiveObject, [&] {
    const com::ComPtr<IUnknown> keep(&Control().ControllingUnknown());
    if (Control().Placement().Translate(com::Out(message))) return S_OK;
    // What the control has no use for (Tab on its last part, Escape) is the container's.
    const auto site = Control().ClientSite().Control();
    const bool used = site && site->TranslateAccelerator(message, KeyModifiers()) == S_OK;
    return used ? S_OK : S_FALSE;
  });
}

}  // namespace tavrix::component
