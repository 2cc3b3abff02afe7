#include "component/activex/ole_in_place_object.h"

#include "component/activex/active_control.h"
#include "component/base/abi.h"

namespace tavrix::component {

OleInPlaceObject::OleInPlaceObject(ActiveControl& control) : Face(control), control_(control) {}

HRESULT OleInPlaceObject::GetWindow(HWND* result) noexcept {
  return Guarded(IID_IOleInPlaceObject, [&] {
    const auto* window = control_.Placement().Window();
    Out(result) = window == nullptr ? nullptr : window->Handle();
    return *result == nullptr ? E_FAIL : S_OK;
  });
}

HRESULT OleInPlaceObject::InPlaceDeactivate() noexcept {
  return Guarded(IID_IOleInPlaceObject, [&] { control_.Placement().Deactivate(); });
}

HRESULT OleInPlaceObject::UIDeactivate() noexcept {
  return Guarded(IID_IOleInPlaceObject, [&] { control_.Placement().UiDeactivate(); });
}

HRESULT OleInPlaceObject::SetObjectRects(LPCRECT position, LPCRECT clip) noexcept {
  return Guarded(IID_IOleInPlaceObject, [&] {
    // Some containers give no clipping rectangle.
    control_.Placement().Place(Out(position), clip == nullptr ? *position : *clip);
  });
}

}  // namespace tavrix::component
