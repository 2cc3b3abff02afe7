#pragma once

#include "com/com_object.h"
#include "com/error_support.h"

namespace tavrix::com {

/// An object whose class overrides the members of one dual interface itself, with error
/// information; `Others` are further interfaces that it overrides. The dual interface stands in a
/// type library of this module.
template <class Dual, class... Others>
class DispatchObject : public ComObject,
                       public DualInterfaceImpl<Dual>,
                       public InterfaceImpl<Others>... {
 public:
  explicit DispatchObject(IUnknown* outer = nullptr)
      : ComObject(outer),
        DualInterfaceImpl<Dual>(static_cast<ComObject&>(*this)),
        InterfaceImpl<Others>(static_cast<ComObject&>(*this))... {
    AddDualInterface(__uuidof(Dual), static_cast<Dual*>(this));
    AddInterface(IID_ISupportErrorInfo, &errors_);
    (AddInterface(__uuidof(Others), static_cast<Others*>(this)), ...);
  }
  STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override {
    return ControllingUnknown().QueryInterface(iid, result);
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ControllingUnknown().AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return ControllingUnknown().Release(); }

 private:
  ErrorSupport errors_{*this};
};

}  // namespace tavrix::com
