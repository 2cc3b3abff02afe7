#pragma once

#include "component/activex/active_control.h"
#include "component/base/abi.h"

namespace tavrix::component {

/// The default interface of a control: its background colour.
template <class Interface>
class BackColorFace : public DualFace<Interface> {
 public:
  explicit BackColorFace(ActiveControl& control)
      : DualFace<Interface>(control), control_(control) {}

  STDMETHODIMP get_BackColor(OLE_COLOR* result) noexcept override {
    return Guarded(__uuidof(Interface), [&] { Out(result) = control_.View().BackColor(); });
  }
  STDMETHODIMP put_BackColor(OLE_COLOR value) noexcept override {
    return Guarded(__uuidof(Interface), [&] { control_.SetBackColor(value); });
  }

 private:
  ActiveControl& control_;
};

}  // namespace tavrix::component
