#include "com/dispatcher.h"

#include <oleauto.h>

#include <algorithm>
#include <string>

#include "com/abi.h"
#include "com/invoke.h"
#include "com/trace.h"
#include "host/trace.h"

namespace tavrix::com {

namespace {

/// The member's name behind "Interface_", or null when `name` does not start so.
LPOLESTR WithoutPrefix(LPOLESTR name, std::wstring_view interface_name) {
  const std::size_t length = interface_name.size();
  if (wcslen(name) <= length + 1 || name[length] != L'_') return nullptr;
  const int order = CompareStringOrdinal(name, static_cast<int>(length), interface_name.data(),
                                         static_cast<int>(length), TRUE);
  return order == CSTR_EQUAL ? name + length + 1 : nullptr;
}

}  // namespace

HRESULT DescriptionOf(const IID& iid, UINT index, ITypeInfo** result) noexcept {
  return Guarded(iid, [&] {
    Out(result) = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    MemberTable::Of(iid).Info().CopyTo(result);
    return S_OK;
  });
}

HRESULT Dispatcher::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const noexcept {
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  for (const Part& part : parts_) {
    if (SUCCEEDED(part.members->IdsOfNames(names, count, ids))) return S_OK;
  }
  for (const Part& part : parts_) {
    LPOLESTR member = WithoutPrefix(names[0], part.members->Name());
    if (member == nullptr || FAILED(part.members->IdsOfNames(&member, 1, ids))) continue;
    if (count == 1) return S_OK;
    std::fill_n(ids + 1, count - 1, DISPID_UNKNOWN);  // names of arguments are not looked up here
    return DISP_E_UNKNOWNNAME;
  }
  std::fill_n(ids, count, DISPID_UNKNOWN);
  return DISP_E_UNKNOWNNAME;
}

HRESULT Dispatcher::Call(DISPID id, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                         UINT* bad_argument) const {
  for (const Part& part : parts_) {
    const Member* member = part.members->Find(id, flags);
    if (member == nullptr) continue;
    // The caller may let go of the object before the call has ended.
    const ComPtr<IDispatch> keep(part.implementation);
    return InvokeMember(part.implementation, *member,
                        {flags, locale, arguments, result, bad_argument});
  }
  throw ComFailure(DISP_E_MEMBERNOTFOUND);
}

HRESULT Dispatcher::Invoke(DISPID id, LCID locale, WORD flags, DISPPARAMS* arguments,
                           VARIANT* result, EXCEPINFO* exception,
                           UINT* bad_argument) const noexcept {
  if (arguments == nullptr) return E_INVALIDARG;
  if (result != nullptr) VariantInit(result);
  SetErrorInfo(0, nullptr);
  HRESULT failure = S_OK;
  try {
    failure = Call(id, locale, flags, arguments, result, bad_argument);
    // The member's own failure travels as an exception, with its text, whatever its code.
    if (SUCCEEDED(failure)) return failure;
  } catch (const ComFailure& mismatch) {
    if (host::Tracing()) TraceFailure(mismatch.Code(), mismatch.what());
    return mismatch.Code();
  } catch (...) {
    return E_UNEXPECTED;
  }
  if (exception == nullptr) return failure;
  FillException(failure, *exception);
  return DISP_E_EXCEPTION;
}

bool Dispatcher::Has(const IID& iid) const {
  return std::any_of(parts_.begin(), parts_.end(),
                     [&](const Part& part) { return part.members->Covers(iid); });
}

}  // namespace tavrix::com
