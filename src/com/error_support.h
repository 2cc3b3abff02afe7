#pragma once

#include "com/com_object.h"

namespace tavrix::com {

/// ISupportErrorInfo: failures of the object's dual interfaces come with error information.
class ErrorSupport : public InterfaceImpl<ISupportErrorInfo> {
 public:
  using InterfaceImpl::InterfaceImpl;
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return Owner().GetDispatcher().Has(iid) ? S_OK : S_FALSE;
  }
};

}  // namespace tavrix::com
