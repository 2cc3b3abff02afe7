#include "component/activex/ole_control.h"

#include "component/activex/active_control.h"
#include "component/base/abi.h"

namespace tavrix::component {

OleControl::OleControl(ActiveControl& control) : Face(control), control_(control) {}

HRESULT OleControl::GetControlInfo(CONTROLINFO* result) noexcept {
  return Guarded(IID_IOleControl, [&] {
    Out(result) = {};
    result->cb = sizeof *result;
    result->dwFlags = control_.Placement().KeysEaten();
  });
}

HRESULT OleControl::OnAmbientPropertyChange(DISPID) noexcept {
  return Guarded(IID_IOleControl, [&] { control_.ApplyAmbients(); });
}

HRESULT OleControl::FreezeEvents(WINBOOL freeze) noexcept {
  return Guarded(IID_IOleControl, [&] {
    if (freeze != FALSE) {
      control_.Events().Freeze();
    } else {
      control_.Events().Thaw();
    }
  });
}

}  // namespace tavrix::component
