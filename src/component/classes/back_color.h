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

  STDMETHODIMP get_BackColor(long* result) noexcept override {
    return Guarded(__uuidof(Interface),
                   [&] { Out(result) = static_cast<long>(control_.View().BackColor()); });
  }
  STDMETHODIMP put_BackColor(long value) noexcept override {
    return Guarded(__uuidof(Interface),
                   [&] { control_.SetBackColor(static_cast<viewkit::Color>(value)); });
  }

 private:
  ActiveControl& control_;
};

}  // namespace tavrix::component
