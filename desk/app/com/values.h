#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>
#include <utility>

#include "component/adapters/values.h"
#include "component/base/abi.h"
#include "component/base/bstr.h"
#include "component/base/variant.h"
#include "host/value.h"

/// Texts and values between Automation and the portable side, and how members hand out results.
namespace desk::app {

using tavrix::component::TextOf;
using tavrix::component::Variant;

/// A new BSTR; an empty text is the null BSTR, which costs nothing and means the same. Throws
/// `std::bad_alloc`.
[[nodiscard]] BSTR NewBstr(std::string_view text);

/// References are followed.
[[nodiscard]] inline tavrix::host::Value ValueOf(const VARIANT& value) {
  return tavrix::component::ToValue(Variant(value));
}

/// The end of every ABI member: no exception leaves it; its text becomes the thread's error.
template <class Body>
[[nodiscard]] HRESULT Guarded(Body&& body) noexcept {
  return tavrix::component::Guarded(IID_IDispatch, std::forward<Body>(body));
}

/// Runs `body` for the result behind `result`, which stays zero when it throws.
template <class Result, class Body>
[[nodiscard]] HRESULT Give(Result* result, Body&& body) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = {};
  return Guarded([&] { *result = body(); });
}

template <class Body>
[[nodiscard]] HRESULT GiveValue(VARIANT* result, Body&& body) noexcept {
  if (result == nullptr) return E_POINTER;
  VariantInit(result);
  return Guarded([&] { *result = tavrix::component::ToVariant(body()).Detach(); });
}

}  // namespace desk::app
