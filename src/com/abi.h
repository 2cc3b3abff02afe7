#pragma once

#include <windows.h>

#include <oaidl.h>

#include <type_traits>
#include <utility>

#include "com/failure.h"

namespace tavrix::com {

/// The code of the exception that is being handled; its text becomes the thread's error
/// information, with `iid` as the interface that failed.
[[nodiscard]] HRESULT FailureOfCurrentException(const IID& iid) noexcept;

/// The body of every method that other programs call: no exception leaves it. `body` gives an
/// HRESULT, or nothing for S_OK.
template <class Body>
[[nodiscard]] HRESULT Guarded(const IID& iid, Body&& body) noexcept {
  try {
    if constexpr (std::is_void_v<std::invoke_result_t<Body>>) {
      std::forward<Body>(body)();
      return S_OK;
    } else {
      return std::forward<Body>(body)();
    }
  } catch (...) {
    return FailureOfCurrentException(iid);
  }
}

/// `pointer`, or E_POINTER as an exception: for out-parameters.
template <class Type>
[[nodiscard]] Type& Out(Type* pointer) {
  if (pointer == nullptr) throw ComFailure(E_POINTER);
  return *pointer;
}

[[nodiscard]] inline VARIANT_BOOL Flag(bool value) {
  return value ? VARIANT_TRUE : VARIANT_FALSE;
}

}  // namespace tavrix::com
