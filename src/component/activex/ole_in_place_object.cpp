#include "component/activex/ole_in_place_object.h"

#include "com/abi.h"
#include "component/activex/active_control.h"

namespace tavrix::component {

HRESULT OleInPlaceObject::GetWindow(HWND* result) noexcept {
  return com::Guarded(IID_IOleInPlaceObject, [&] {
    const auto* window = Control().Placement().Window();
    com::Out(result) = window == nullptr ? nullptr : window->Handle();
    return *result == nullptr ? E_FAIL : S_OK;
  });
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

}  // namespace tavrix::component
