#include "com/late_object.h"

#include <dispex.h>
#include <windows.h>

#include <oleauto.h>

#include "com/failure.h"
#include "com/invoke.h"
#include "com/raised_exception.h"
#include "com/trace.h"
#include "com/values.h"
#include "host/calls.h"
#include "host/trace.h"
#include "host/utf.h"

namespace tavrix::com {

namespace {

using host::Narrow;

/// Classes of VBScript know their names through the extended interface only under Wine.
DISPID FindMember(IDispatch& object, const wchar_t* member) {
  DISPID id = DISPID_UNKNOWN;
  const auto extended = Query<IDispatchEx>(&object);
  const Bstr name{std::wstring_view(member)};
  if (extended && SUCCEEDED(extended->GetDispID(name.Get(), fdexNameCaseInsensitive, &id))) {
    return id;
  }
  auto* text = const_cast<LPOLESTR>(member);
  const HRESULT result = object.GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(result)) {
    throw ComFailure(result, "主程序的对象没有成员 " + Narrow(member));
  }
  return id;
}

std::vector<VARIANT> Reversed(LateObject::Values arguments) {
  std::vector<VARIANT> reversed;
  for (std::size_t i = arguments.size(); i > 0; --i) {
    reversed.push_back((arguments.begin() + (i - 1))->Get());
  }
  return reversed;
}

constexpr WORD kGivesValue = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

bool GivesValue(WORD flags) {
  return (flags & DISPATCH_PROPERTYGET) != 0;
}

/// An error of Visual Basic and the languages that number theirs alike.
constexpr HRESULT BasicError(WORD number) {
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
}

bool Knows(IDispatch& object, const wchar_t* member) {
  const auto extended = Query<IDispatchEx>(&object);
  DISPID id = DISPID_UNKNOWN;
  return extended && SUCCEEDED(extended->GetDispID(Bstr(std::wstring_view(member)).Get(),
                                                   fdexNameCaseSensitive, &id));
}

/// An object of JavaScript, where every member is data: an operation is one that holds a function.
/// To call other data is an error there, which the engine reports to its user at once.
bool HasDataOnly(IDispatch& object) {
  return Knows(object, L"hasOwnProperty");
}

bool IsFunction(const Variant& value) {
  const auto object = value.Object();
  return object && Knows(*object.Get(), L"apply");
}

}  // namespace

bool IsArgumentCount(const ComFailure& failure) {
  constexpr HRESULT kNotOptional = BasicError(449);
  constexpr HRESULT kWrongNumber = BasicError(450);
  const HRESULT code = failure.Code();
  if (code == E_FAIL) return !failure.HasOwnText();  // all that some script engines say
  return code == DISP_E_BADPARAMCOUNT || code == DISP_E_PARAMNOTOPTIONAL || code == kNotOptional ||
         code == kWrongNumber;
}

LateObject::LateObject(ComPtr<IDispatch> object, const IID& declared)
    : object_(std::move(object)), declared_(object_.As<IDispatch>(declared)) {
  if (declared_) members_ = &MemberTable::Of(declared);
}

Variant LateObject::Invoke(const wchar_t* member, WORD flags,
                           std::vector<VARIANT> arguments) const {
  const LateObject keep = *this;  // the call may end whoever holds this
  DISPID assigned = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  if ((flags & DISPATCH_PROPERTYPUT) != 0) {
    parameters.cNamedArgs = 1;
    parameters.rgdispidNamedArgs = &assigned;
  }
  if (host::Tracing()) TraceHostCall(member, parameters);
  SetErrorInfo(0, nullptr);
  auto declared = keep.InvokeDeclared(member, flags, parameters);
  Variant result = declared ? std::move(*declared) : keep.InvokeByName(member, flags, parameters);
  if ((result.Type() & VT_BYREF) == 0) return result;
  return Variant(result.Get());  // what a reference leads to may be gone after the next call
}

std::optional<Variant> LateObject::InvokeDeclared(const wchar_t* member, WORD flags,
                                                  DISPPARAMS& parameters) const {
  if (!declared_) return {};
  auto* name = const_cast<LPOLESTR>(member);
  DISPID id = DISPID_UNKNOWN;
  const Member* method = nullptr;
  if (SUCCEEDED(members_->IdsOfNames(&name, 1, &id))) method = members_->Find(id, flags);
  if (method == nullptr) return {};
  Variant result;
  VARIANT* wanted = GivesValue(flags) ? result.Put() : nullptr;
  CheckCall(InvokeMember(declared_.Get(), *method,
                         {flags, LOCALE_INVARIANT, &parameters, wanted, nullptr}));
  return result;
}

Variant LateObject::InvokeByName(const wchar_t* member, WORD flags, DISPPARAMS& parameters) const {
  const DISPID id = FindMember(*object_.Get(), member);
  const auto call = [&](WORD kind) {
    Variant result;
    RaisedException exception;
    UINT bad_argument = 0;
    const HRESULT status =
        object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                        GivesValue(kind) ? result.Put() : nullptr, exception.Put(), &bad_argument);
    if (status == DISP_E_EXCEPTION) throw exception.Failure();
    if (FAILED(status)) throw FailureOfCall(status);
    return result;
  };
  if (flags == kGivesValue && parameters.cArgs == 0 && HasDataOnly(*object_.Get())) {
    Variant value = call(DISPATCH_PROPERTYGET);
    if (!IsFunction(value)) return value;
  }
  return call(flags);
}

bool LateObject::IsOfScript() const {
  return static_cast<bool>(object_.As<IDispatchEx>());
}

Variant LateObject::Get(const wchar_t* member, Values arguments) const {
  return Invoke(member, kGivesValue, Reversed(arguments));
}

Variant LateObject::GetOptional(const wchar_t* member, const Variant& argument) const {
  try {
    return Get(member);
  } catch (const ComFailure& failure) {
    if (!IsArgumentCount(failure)) throw;
  }
  return Get(member, {argument});
}

std::string LateObject::TextOf(const wchar_t* member, Values arguments) const {
  return host::NoObject(ToValue(Get(member, arguments)), Narrow(member).c_str()).ToText();
}

bool LateObject::FlagOf(const wchar_t* member, Values arguments) const {
  return host::NoObject(ToValue(Get(member, arguments)), Narrow(member).c_str()).ToNumber() != 0;
}

bool LateObject::GivenFlagOf(const wchar_t* member) const {
  const host::Value value = ToValue(Get(member));
  if (const bool* flag = std::get_if<bool>(&value.Raw())) return *flag;
  return host::RequiredNumber(value, Narrow(member).c_str()) != 0;
}

std::string LateObject::GivenTextOf(const wchar_t* member, Values arguments) const {
  return host::RequiredText(ToValue(Get(member, arguments)), Narrow(member).c_str());
}

std::int32_t LateObject::LongOf(const wchar_t* member, Values arguments) const {
  return host::RequiredLong(ToValue(Get(member, arguments)), Narrow(member).c_str());
}

ComPtr<IDispatch> LateObject::ObjectOf(const wchar_t* member, Values arguments) const {
  return Get(member, arguments).Object();
}

Variant LateObject::GetWithReference(const wchar_t* member, Values arguments, Variant& last) const {
  std::vector<VARIANT> reversed = Reversed(arguments);
  reversed.insert(reversed.begin(), last.Reference());
  return Invoke(member, kGivesValue, std::move(reversed));
}

void LateObject::Call(const wchar_t* member, Values arguments) const {
  static_cast<void>(Invoke(member, DISPATCH_METHOD, Reversed(arguments)));
}

void LateObject::Put(const wchar_t* member, const Variant& value) const {
  static_cast<void>(Invoke(member, DISPATCH_PROPERTYPUT, {value.Get()}));
}

}  // namespace tavrix::com
