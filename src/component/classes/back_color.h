#pragma once

#include "com/abi.h"
#include "component/activex/active_control.h"

namespace tavrix::component {

/// The default interface of a control: its background colour.
template <class Interface>
class BackColorImpl : public OfControl<com::DualInterfaceImpl<Interface>> {
 public:
  using OfControl<com::DualInterfaceImpl<Interface>>::OfControl;

  STDMETHODIMP get_BackColor(OLE_COLOR* result) noexcept override {
    return com::Guarded(__uuidof(Interface),
                        [&] { com::Out(result) = this->Control().View().BackColor(); });
  }
  STDMETHODIMP put_BackColor(OLE_COLOR value) noexcept override {
    return com::Guarded(__uuidof(Interface), [&] { this->Control().SetBackColor(value); });
  }
};

}  // namespace tavrix::component
