#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <utility>

#include "app/com.h"
#include "com/abi.h"
#include "com/bstr.h"
#include "host/error.h"

/// How members hand out their results.
namespace desk::app {

using tavrix::com::Flag;
using tavrix::com::NewBstr;

/// References are followed.
[[nodiscard]] inline tavrix::host::Value ValueOf(const VARIANT& value) {
  return tavrix::com::ToValue(Variant(value));
}

/// The body of a member: its failure's text becomes the thread's.
template <class Body>
[[nodiscard]] HRESULT Guarded(Body&& body) noexcept {
  return tavrix::com::Guarded(IID_IDispatch, std::forward<Body>(body));
}

/// Runs `body` for the result behind `result`, which stays zero when it throws.
template <class Result, class Body>
[[nodiscard]] HRESULT Give(Result* result, Body&& body) noexcept {
  return Guarded([&] {
    tavrix::com::Out(result) = {};
    *result = body();
  });
}

template <class Body>
[[nodiscard]] HRESULT GiveValue(VARIANT* result, Body&& body) noexcept {
  return Give(result, [&] { return tavrix::com::ToVariant(body()).Detach(); });
}

/// A new object over `object` as an IDispatch that the caller owns. A missing one gives a null.
template <class Made, class Object, class... Args>
[[nodiscard]] IDispatch* NewDispatch(const std::shared_ptr<Object>& object, Args&&... args) {
  if (!object) return nullptr;
  return Make<Made>(object, std::forward<Args>(args)...).Detach();
}

}  // namespace desk::app
