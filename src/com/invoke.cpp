#include "com/invoke.h"

#include <oleauto.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "com/abi.h"
#include "com/failure.h"
#include "com/raised_exception.h"
#include "host/non_copyable.h"

namespace tavrix::com {

namespace {

/// The arguments of a method while it is called.
class Arguments : private host::NonCopyable {
 public:
  Arguments(const Member& member, const LateCall& call);

  [[nodiscard]] HRESULT Call(void* object, const Member& member);
  /// Hands back what the method has put into references of the caller.
  void FillReferences();
  /// Hands the member's value to the caller.
  void FillResult();

 private:
  struct Slot {
    Variant value;                   // converted to what the method takes
    VARIANT passed{};                // the value or a reference to it
    const VARIANT* given = nullptr;  // the caller's argument
    ComPtr<IUnknown> before;         // the object it refers to, when it refers to one
  };
  void CheckNames() const;
  void Prepare(std::size_t position);
  void PrepareReference(Slot& slot, VARTYPE type);
  [[nodiscard]] std::size_t NamedPosition(UINT argument) const;
  [[nodiscard]] const VARIANT* Given(std::size_t position) const;
  void Blame(const VARIANT* argument) const;
  [[nodiscard]] Variant Converted(const Parameter& parameter, const VARIANT& given) const;

  const Member& member_;
  const LateCall& call_;
  std::vector<Slot> slots_;
};

bool IsMissing(const VARIANT* argument) {
  return argument == nullptr ||
         (argument->vt == VT_ERROR && argument->scode == DISP_E_PARAMNOTFOUND);
}

Variant ToObject(const Variant& value) {
  const bool nothing = value.Type() == VT_EMPTY || value.Type() == VT_NULL;
  const ComPtr<IDispatch> object = value.Object();
  const bool null_object = value.Type() == VT_DISPATCH && value.Get().pdispVal == nullptr;
  if (!object && !nothing && !null_object) throw ComFailure(DISP_E_TYPEMISMATCH);
  return Variant(object);
}

/// A colour of the system as languages without such a Long calculate it: 0x8000000F as a number
/// that is not negative.
std::optional<Variant> UnsignedLong(const Variant& value) {
  double number = 0;
  if (value.Type() == VT_R8) number = value.Get().dblVal;
  if (value.Type() == VT_UI4) number = value.Get().ulVal;
  if (number < 2147483648.0 || number > 4294967295.0 || std::floor(number) != number) return {};
  return Variant(static_cast<std::int32_t>(static_cast<std::uint32_t>(number)));
}

Variant ToType(const Variant& value, VARTYPE type, LCID locale) {
  if (type == VT_VARIANT || type == value.Type()) return value;
  if (type == VT_I4) {
    if (const auto number = UnsignedLong(value)) return *number;
  }
  if (type == VT_DISPATCH) return ToObject(value);
  Variant result;
  Check(VariantChangeTypeEx(result.Put(), Readable(value.Get()), locale, VARIANT_ALPHABOOL, type));
  return result;
}

/// Where the data of a simple value stand.
void* DataOf(VARIANT& value) {
  return value.vt == VT_DECIMAL ? static_cast<void*>(&value.decVal)
                                : static_cast<void*>(&value.bVal);
}

void StoreTyped(const VARIANT& target, const Variant& value, LCID locale) {
  const auto type = static_cast<VARTYPE>(target.vt & ~VT_BYREF);
  Variant converted = ToType(value, type, locale);
  if (type == VT_BSTR) {
    SysFreeString(std::exchange(*target.pbstrVal, converted.Detach().bstrVal));
  } else if (type == VT_DISPATCH || type == VT_UNKNOWN) {
    const auto before = ComPtr<IUnknown>::Attach(*target.ppunkVal);
    *target.ppunkVal = converted.Detach().punkVal;
  } else if (type == VT_I4) {
    *target.plVal = converted.Get().lVal;
  } else {
    throw ComFailure(DISP_E_TYPEMISMATCH);
  }
}

/// Puts `value` where the caller's argument refers to; does nothing when that is no reference.
void Store(const VARIANT& given, const Variant& value, LCID locale) {
  VARIANT* variable = nullptr;
  const VARIANT* target = &given;
  while (target->vt == (VT_BYREF | VT_VARIANT)) target = variable = target->pvarVal;
  if ((target->vt & VT_BYREF) != 0) {
    StoreTyped(*target, value, locale);
  } else if (variable != nullptr) {
    Check(VariantCopy(variable, Readable(value.Get())));
  }
}

Arguments::Arguments(const Member& member, const LateCall& call)
    : member_(member), call_(call), slots_(member.parameters.size()) {
  if (call.arguments->cArgs > member.Arguments()) throw ComFailure(DISP_E_BADPARAMCOUNT);
  CheckNames();
  for (std::size_t i = 0; i < slots_.size(); ++i) Prepare(i);
}

void Arguments::CheckNames() const {
  for (UINT i = 0; i < call_.arguments->cNamedArgs; ++i) {
    if (NamedPosition(i) < member_.Arguments()) continue;
    Blame(&call_.arguments->rgvarg[i]);
    throw ComFailure(DISP_E_PARAMNOTFOUND);
  }
}

/// Tells the caller which of its arguments is wrong.
void Arguments::Blame(const VARIANT* argument) const {
  if (call_.bad_argument == nullptr) return;
  *call_.bad_argument = static_cast<UINT>(argument - call_.arguments->rgvarg);
}

std::size_t Arguments::NamedPosition(UINT argument) const {
  const DISPID name = call_.arguments->rgdispidNamedArgs[argument];
  return name == DISPID_PROPERTYPUT ? member_.Arguments() - 1 : static_cast<std::size_t>(name);
}

/// Arguments stand in reverse; the named ones come first and tell their position.
const VARIANT* Arguments::Given(std::size_t position) const {
  const DISPPARAMS& all = *call_.arguments;
  for (UINT i = 0; i < all.cNamedArgs; ++i) {
    if (NamedPosition(i) == position) return &all.rgvarg[i];
  }
  const std::size_t plain = all.cArgs - all.cNamedArgs;
  return position < plain ? &all.rgvarg[all.cArgs - 1 - position] : nullptr;
}

Variant Arguments::Converted(const Parameter& parameter, const VARIANT& given) const {
  const auto type = static_cast<VARTYPE>(parameter.type & ~VT_BYREF);
  const Variant value(given);
  // A variable that is to be filled with a text need not hold one yet.
  const bool none = value.Type() == VT_EMPTY || value.Type() == VT_NULL;
  if (none && parameter.type == (VT_BYREF | VT_BSTR)) return Variant(std::string_view());
  return ToType(value, type, call_.locale);
}

void Arguments::Prepare(std::size_t position) {
  const Parameter& parameter = member_.parameters[position];
  Slot& slot = slots_[position];
  if (!parameter.result) {
    slot.given = Given(position);
    const bool missing = IsMissing(slot.given);
    if (missing && !parameter.optional) throw ComFailure(DISP_E_PARAMNOTOPTIONAL);
    if (missing) slot.given = nullptr;
    try {
      // A variant that is left out stays "missing"; all else is converted.
      slot.value = missing ? parameter.fallback : Converted(parameter, *slot.given);
    } catch (const ComFailure&) {
      if (!missing) Blame(slot.given);
      throw;
    }
  }
  if ((parameter.type & VT_BYREF) != 0) {
    PrepareReference(slot, parameter.type);
  } else {
    slot.passed = slot.value.Get();  // lent: `value` keeps owning it
  }
}

void Arguments::PrepareReference(Slot& slot, VARTYPE type) {
  const auto target = static_cast<VARTYPE>(type & ~VT_BYREF);
  VARIANT& value = *slot.value.InPlace();
  slot.passed.vt = type;
  if (target == VT_VARIANT) {
    slot.passed.pvarVal = &value;
    return;
  }
  if (value.vt != target) value.vt = target;  // an empty result: all bits are zero
  slot.passed.byref = DataOf(value);
  if (target == VT_DISPATCH || target == VT_UNKNOWN) slot.before = ComPtr<IUnknown>(value.punkVal);
}

HRESULT Arguments::Call(void* object, const Member& member) {
  std::vector<VARTYPE> types(slots_.size() + 1);
  std::vector<VARIANTARG*> values(slots_.size() + 1);
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    types[i] = member.parameters[i].type;
    values[i] = &slots_[i].passed;
  }
  VARIANT status{};
  Check(DispCallFunc(object, member.slot, CC_STDCALL, VT_ERROR, static_cast<UINT>(slots_.size()),
                     types.data(), values.data(), &status));
  return status.scode;
}

void Arguments::FillReferences() {
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const Parameter& parameter = member_.parameters[i];
    if (parameter.result || (parameter.type & VT_BYREF) == 0 || slots_[i].given == nullptr)
      continue;
    // A member that leaves an object alone leaves the caller's variable alone too: it may hold
    // something else by now, or nothing.
    const VARIANT& now = slots_[i].value.Get();
    const bool object = now.vt == VT_DISPATCH || now.vt == VT_UNKNOWN;
    if (object && now.punkVal == slots_[i].before.Get()) continue;
    Store(*slots_[i].given, slots_[i].value, call_.locale);
  }
}

void Arguments::FillResult() {
  if (call_.result == nullptr || !member_.HasResult()) return;
  *call_.result = slots_.back().value.Detach();
}

bool LeadsToDefaultMember(const Member& member, const LateCall& call) {
  return member.kind == INVOKE_PROPERTYGET && member.Arguments() == 0 &&
         call.arguments->cArgs > 0 && member.HasResult() &&
         member.parameters.back().type == (VT_BYREF | VT_DISPATCH);
}

HRESULT InvokeDefaultMember(void* object, const Member& member, const LateCall& call) {
  DISPPARAMS none{};
  Variant owner;
  LateCall get = call;
  get.arguments = &none;
  get.result = owner.Put();
  const HRESULT result = InvokeMember(object, member, get);
  if (FAILED(result)) return result;
  const ComPtr<IDispatch> target = owner.Object();
  if (!target) throw ComFailure(DISP_E_BADPARAMCOUNT);
  DISPPARAMS arguments = *call.arguments;
  RaisedException raised;
  const HRESULT status = target->Invoke(DISPID_VALUE, IID_NULL, call.locale, call.flags, &arguments,
                                        call.result, raised.Put(), call.bad_argument);
  if (SUCCEEDED(status)) return status;
  // Its text becomes the thread's, where the caller's exception is filled from.
  return Guarded(IID_IDispatch, [&] {
    throw status == DISP_E_EXCEPTION ? raised.Failure() : FailureOfCall(status);
  });
}

}  // namespace

HRESULT InvokeMember(void* object, const Member& member, const LateCall& call) {
  if (LeadsToDefaultMember(member, call)) return InvokeDefaultMember(object, member, call);
  Arguments arguments(member, call);
  const HRESULT result = arguments.Call(object, member);
  // Also after a failure: `Validate` empties its results then.
  arguments.FillReferences();
  if (SUCCEEDED(result)) arguments.FillResult();
  return result;
}

void FillException(HRESULT failure, EXCEPINFO& exception) noexcept {
  exception = {};
  exception.scode = failure;
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK) return;
  info->GetSource(&exception.bstrSource);
  info->GetDescription(&exception.bstrDescription);
}

}  // namespace tavrix::com
