#include "com/raised_exception.h"

#include <oleauto.h>

#include <string>

#include "com/bstr.h"

namespace tavrix::com {

RaisedException::~RaisedException() {
  SysFreeString(info_.bstrSource);
  SysFreeString(info_.bstrDescription);
  SysFreeString(info_.bstrHelpFile);
}

ComFailure RaisedException::Failure() {
  if (info_.pfnDeferredFillIn != nullptr) info_.pfnDeferredFillIn(&info_);
  const HRESULT code = Code();
  const std::string text = TextOf(info_.bstrDescription);
  return text.empty() ? FailureOfCall(code) : ComFailure(code, text);
}

HRESULT RaisedException::Code() const {
  if (FAILED(info_.scode)) return info_.scode;
  // Visual Basic's own way to number an error.
  if (info_.wCode != 0) return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, info_.wCode);
  return DISP_E_EXCEPTION;
}

}  // namespace tavrix::com
