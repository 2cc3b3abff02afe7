#include "component/adapters/late_object.h"

#include <dispex.h>
#include <windows.h>

#include <oleauto.h>

#include "component/base/failure.h"
#include "component/base/raised_exception.h"
#include "viewkit/win32/wide.h"

namespace tavrix::component {

namespace {

using viewkit::win32::Narrow;

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

}  // namespace

Variant LateObject::Invoke(const wchar_t* member, WORD flags,
                           std::vector<VARIANT> arguments) const {
  const ComPtr<IDispatch> keep = object_;
  SetErrorInfo(0, nullptr);
  const DISPID id = FindMember(*keep.Get(), member);
  DISPID assigned = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  if ((flags & DISPATCH_PROPERTYPUT) != 0) {
    parameters.cNamedArgs = 1;
    parameters.rgdispidNamedArgs = &assigned;
  }
  const bool wanted = (flags & DISPATCH_PROPERTYGET) != 0;
  Variant result;
  RaisedException exception;
  UINT bad_argument = 0;
  const HRESULT status =
      keep->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                   wanted ? result.Put() : nullptr, exception.Put(), &bad_argument);
  if (status == DISP_E_EXCEPTION) throw exception.Failure();
  if (FAILED(status)) throw FailureOfCall(status);
  if ((result.Type() & VT_BYREF) == 0) return result;
  return Variant(result.Get());  // what a reference leads to may be gone after the next call
}

Variant LateObject::Get(const wchar_t* member, Values arguments) const {
  return Invoke(member, kGivesValue, Reversed(arguments));
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

}  // namespace tavrix::component
