#include "com/failure.h"

#include <oleauto.h>

#include <memory>

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "host/utf.h"

namespace tavrix::com {

namespace {

struct LocalDeleter {
  void operator()(wchar_t* memory) const { LocalFree(memory); }
};

}  // namespace

std::string MeaningOf(HRESULT code) {
  wchar_t* buffer = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, static_cast<DWORD>(code), 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
  const std::unique_ptr<wchar_t, LocalDeleter> owner(buffer);
  std::wstring_view text(buffer == nullptr ? L"" : buffer, length);
  while (!text.empty() && (text.back() <= L' ')) text.remove_suffix(1);
  if (!text.empty()) return host::Narrow(text);
  wchar_t number[40];
  swprintf(number, std::size(number), L"自动化错误 0x%08lX", static_cast<unsigned long>(code));
  return host::Narrow(number);
}

ComFailure::ComFailure(HRESULT code) : HostError(MeaningOf(code)), code_(code) {}

ComFailure FailureOfCall(HRESULT code) {
  ComPtr<IErrorInfo> info;
  Bstr text;
  if (GetErrorInfo(0, info.Put()) == S_OK) info->GetDescription(text.Put());
  return ViewOf(text.Get()).empty() ? ComFailure(code) : ComFailure(code, TextOf(text.Get()));
}

void Check(HRESULT result) {
  if (FAILED(result)) throw ComFailure(result);
}

void CheckCall(HRESULT result) {
  if (FAILED(result)) throw FailureOfCall(result);
}

}  // namespace tavrix::com
