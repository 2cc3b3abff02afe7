#include "component/named_object.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <exception>
#include <optional>

#include "com/bstr.h"
#include "com/failure.h"

namespace tavrix::test {

using com::Bstr;

std::string TextOf(const Variant& value) {
  if (value.Type() == VT_NULL) return "(null)";
  if (value.Type() == VT_EMPTY) return "(empty)";
  return com::TextOf(value.As(VT_BSTR).Get().bstrVal);
}

const VARIANT& StubCall::Raw(std::size_t position) const {
  if (position >= arguments_.cArgs) throw BareFailure{DISP_E_BADPARAMCOUNT};
  return arguments_.rgvarg[arguments_.cArgs - 1 - position];
}

std::string StubCall::Text(std::size_t position) const {
  return TextOf(At(position));
}

long StubCall::Number(std::size_t position) const {
  return At(position).As(VT_I4).Get().lVal;
}

NamedObject::NamedObject(Members members, Gate gate)
    : members_(std::move(members)), gate_(std::move(gate)) {}

ComPtr<IDispatch> NamedObject::Make(Members members, Gate gate) {
  return com::MakeObject<NamedObject>(std::move(members), std::move(gate)).As<IDispatch>();
}

namespace {

HRESULT Raise(const Raised& raised, EXCEPINFO* exception) {
  if (exception == nullptr) return raised.code;
  *exception = {};
  exception->scode = raised.code;
  exception->bstrDescription = Bstr(std::string_view(raised.text)).Detach();
  return DISP_E_EXCEPTION;
}

}  // namespace

HRESULT NamedObject::GetTypeInfoCount(UINT* count) noexcept {
  *count = 0;
  return S_OK;
}

HRESULT NamedObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                   DISPID* ids) noexcept {
  if (count != 1) return DISP_E_UNKNOWNNAME;
  for (std::size_t i = 0; i < members_.size(); ++i) {
    if (_wcsicmp(members_[i].first.c_str(), names[0]) != 0) continue;
    ids[0] = static_cast<DISPID>(i + 1);
    return S_OK;
  }
  ids[0] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

HRESULT NamedObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                            VARIANT* result, EXCEPINFO* exception, UINT*) noexcept {
  const auto unnamed = std::ranges::find(members_, L"", &Members::value_type::first);
  const auto position = static_cast<std::size_t>(id == DISPID_VALUE ? unnamed - members_.begin()
                                                                    : std::ptrdiff_t{id} - 1);
  if (position >= members_.size()) return DISP_E_MEMBERNOTFOUND;
  const ComPtr<IDispatch> keep(this);
  try {
    const auto& [name, function] = members_[position];
    std::optional<Variant> other;
    try {
      if (gate_) gate_(name);
    } catch (const Answered& answer) {
      other = answer.value;
    }
    Variant value = function(StubCall(flags, *arguments));
    if (other) value = *other;
    if (result != nullptr) *result = value.Detach();
    return S_OK;
  } catch (const BareFailure& failure) {
    return failure.code;
  } catch (const Raised& raised) {
    return Raise(raised, exception);
  } catch (const std::exception& error) {
    return Raise({E_FAIL, error.what()}, exception);
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace tavrix::test
