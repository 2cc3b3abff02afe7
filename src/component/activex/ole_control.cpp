#include "component/activex/ole_control.h"

#include "com/abi.h"
#include "component/activex/active_control.h"

namespace tavrix::component {

HRESULT OleControl::GetControlInfo(CONTROLINFO* result) noexcept {
  return com::Guarded(IID_IOleControl, [&] {
    com::Out(result) = {};
    result->cb = sizeof *result;
    result->dwFlags = Control().Placement().KeysEaten();
  });
}

HRESULT OleControl::OnAmbientPropertyChange(DISPID) noexcept {
  return com::Guarded(IID_IOleControl, [&] { Control().ApplyAmbients(); });
}

HRESULT OleControl::FreezeEvents(WINBOOL freeze) noexcept {
  return com::Guarded(IID_IOleControl, [&] {
    if (freeze != FALSE) {
      Control().Events().Freeze();
    } else {
      Control().Events().Thaw();
    }
  });
}

}  // namespace tavrix::component
