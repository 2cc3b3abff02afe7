#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <type_traits>

#include "com/failure.h"

namespace tavrix::com {

/// The code of the exception that is being handled; its text becomes the thread's error
/// information, with `iid` as the interface that failed.
[[nodiscard]] HRESULT FailureOfCurrentException(const IID& iid) noexcept;

/// `Guarded` with its body as two pointers: what traces and catches is there once, not with each
/// body.
[[nodiscard]] HRESULT RunGuarded(const IID& iid, const char* member,
                                 HRESULT (*run)(const void* body), const void* body) noexcept;

/// The body of every method that other programs call: no exception leaves it. `body` gives an
/// HRESULT, or nothing for S_OK. `member` is for the trace: by default the function that calls
/// this.
template <class Body>
[[nodiscard]] HRESULT Guarded(const IID& iid, const Body& body,
                              const char* member = __builtin_FUNCTION()) noexcept {
  const auto run = [](const void* given) -> HRESULT {
    const auto& call = *static_cast<const Body*>(given);
    if constexpr (std::is_void_v<std::invoke_result_t<const Body&>>) {
      call();
      return S_OK;
    } else {
      return call();
    }
  };
  return RunGuarded(iid, member, run, std::addressof(body));
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
