#pragma once

#include <windows.h>

#include <oaidl.h>

#include "app/com/object.h"
#include "app/com/type_library.h"

namespace desk::app {

/// A COM object with one dual interface, whose late-bound half follows from its type library, and
/// with error texts. `Others` are further interfaces.
template <class Dual, class... Others>
class DispatchObject : public ComObject<Dual, ISupportErrorInfo, Others...> {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    *info = ComPtr<ITypeInfo>(Info()).Detach();
    return *info != nullptr ? S_OK : TYPE_E_LIBNOTREGISTERED;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* members) override {
    if (Info() == nullptr) return TYPE_E_LIBNOTREGISTERED;
    return Info()->GetIDsOfNames(names, count, members);
  }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* argument) override {
    if (Info() == nullptr) return TYPE_E_LIBNOTREGISTERED;
    return Info()->Invoke(static_cast<Dual*>(this), member, flags, parameters, result, exception,
                          argument);
  }
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return iid == __uuidof(Dual) ? S_OK : S_FALSE;
  }

 protected:
  [[nodiscard]] void* InterfaceOf(REFIID iid) override {
    if (iid == IID_IDispatch) return static_cast<Dual*>(this);
    return ComObject<Dual, ISupportErrorInfo, Others...>::InterfaceOf(iid);
  }

 private:
  [[nodiscard]] static ITypeInfo* Info() {
    static const ComPtr<ITypeInfo> info = TypeInfoOf(__uuidof(Dual));
    return info.Get();
  }
};

}  // namespace desk::app
