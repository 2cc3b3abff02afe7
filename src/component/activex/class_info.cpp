#include "component/activex/class_info.h"

#include "component/base/abi.h"
#include "component/base/type_library.h"

namespace tavrix::component {

HRESULT ClassInfo::GetClassInfo(ITypeInfo** result) noexcept {
  return Guarded(IID_IProvideClassInfo2, [&] {
    Out(result) = nullptr;
    *result = TypeInfoOf(clsid_).Detach();
  });
}

HRESULT ClassInfo::GetGUID(DWORD kind, GUID* result) noexcept {
  return Guarded(IID_IProvideClassInfo2, [&] {
    Out(result) = GUID{};
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
    *result = source_;
    return S_OK;
  });
}

}  // namespace tavrix::component
