#pragma once

#include "com/abi.h"
#include "com/com_object.h"

namespace tavrix::component {

class ActiveControl;

/// An interface implementation that belongs to a control; `Impl` is `com::InterfaceImpl` or
/// `com::DualInterfaceImpl` of the interface.
template <class Impl>
class OfControl : public Impl {
 public:
  explicit OfControl(ActiveControl& control) : Impl(control), control_(control) {}

 protected:
  ~OfControl() = default;
  [[nodiscard]] ActiveControl& Control() { return control_; }
  /// Runs `body` while the control stays. It gives an HRESULT, or nothing for S_OK.
  template <class Body>
  [[nodiscard]] HRESULT Run(const Body& body, const char* member = __builtin_FUNCTION()) noexcept {
    const auto run = [&] {
      const com::ComPtr<IUnknown> keep(&this->Owner().ControllingUnknown());
      return body();
    };
    return com::Guarded(__uuidof(typename Impl::InterfaceType), run, member);
  }

 private:
  ActiveControl& control_;
};

}  // namespace tavrix::component
