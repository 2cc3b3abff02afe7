#include "com/abi.h"

#include <oleauto.h>

#include <exception>
#include <new>
#include <stdexcept>

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/trace.h"
#include "host/report.h"
#include "host/trace.h"

namespace tavrix::com {

namespace {

void SetErrorText(const IID& iid, const std::string& text) noexcept {
  try {
    ComPtr<ICreateErrorInfo> info;
    if (FAILED(CreateErrorInfo(info.Put()))) return;
    info->SetGUID(iid);
    info->SetSource(Bstr(L"tavrix").Get());
    info->SetDescription(Bstr(text).Get());
    SetErrorInfo(0, info.As<IErrorInfo>().Get());
  } catch (...) {  // the code alone must do
  }
}

HRESULT CodeOf(const std::exception& error) {
  if (const auto* failure = dynamic_cast<const ComFailure*>(&error)) return failure->Code();
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) return E_OUTOFMEMORY;
  if (dynamic_cast<const std::out_of_range*>(&error) != nullptr) return DISP_E_BADINDEX;
  if (dynamic_cast<const std::invalid_argument*>(&error) != nullptr) return E_INVALIDARG;
  return E_FAIL;
}

}  // namespace

HRESULT FailureOfCurrentException(const IID& iid) noexcept {
  try {
    throw;
  } catch (const std::exception& error) {
    const std::string text = host::ErrorText(error);
    const HRESULT code = CodeOf(error);
    if (host::Tracing()) TraceFailure(code, text);
    SetErrorText(iid, text);
    return code;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

HRESULT RunGuarded(const IID& iid, const char* member, HRESULT (*run)(const void* body),
                   const void* body) noexcept {
  if (host::Tracing()) TraceCall(iid, member);
  try {
    return run(body);
  } catch (...) {
    return FailureOfCurrentException(iid);
  }
}

}  // namespace tavrix::com
