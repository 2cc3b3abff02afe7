#pragma once

#include "component/base/identity.h"

namespace tavrix::component {

/// ISupportErrorInfo: failures of the object's dual interfaces come with error information.
class ErrorSupport : public Face<ISupportErrorInfo> {
 public:
  using Face::Face;
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return Owner().Late().Has(iid) ? S_OK : S_FALSE;
  }
};

}  // namespace tavrix::component
