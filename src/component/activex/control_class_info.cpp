#include "component/activex/control_class_info.h"

namespace tavrix::component {

HRESULT ControlClassInfo::GetGUID(DWORD kind, GUID* result) noexcept {
  return Guarded(IID_IProvideClassInfo2, [&] {
    Out(result) = GUID{};
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
    *result = source_;
    return S_OK;
  });
}

}  // namespace tavrix::component
