#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "host/trace.h"

namespace tavrix::host {

/// Severity of an error report.
inline constexpr std::int32_t kLoadingError = 8;
inline constexpr std::int32_t kCommandError = 2;

/// Title of the boxes in which the views ask and warn.
inline constexpr const char* kPromptTitle = "提示：";

/// The text of an exception for a user.
[[nodiscard]] std::string ErrorText(const std::exception& error);

/// `prefix` with the error's text behind it, which is a line of the trace too.
[[nodiscard]] std::string TrappedText(std::string_view prefix, const std::exception& error);
/// Makes the exception that is being handled, which nobody is told of, a line of the trace.
void TraceIgnored() noexcept;

/// What a trapped `Body` gives; where it has no result of its own, whether it has come to its end.
template <class Body>
using TrapResult = std::conditional_t<std::is_void_v<std::invoke_result_t<Body>>, bool,
                                      std::invoke_result_t<Body>>;

/// The error trap of a public routine: runs `body`; when it throws, reports `prefix` followed
/// directly by the error's text through `report(text, level)` and gives a result of no value:
/// false, nothing. No exception leaves, not even one of `report` itself.
template <class Report, class Body>
TrapResult<Body> Trap(const Report& report, std::string_view prefix, std::int32_t level,
                      Body&& body) noexcept {
  try {
    if constexpr (std::is_void_v<std::invoke_result_t<Body>>) {
      std::forward<Body>(body)();
      return true;
    } else {
      return std::forward<Body>(body)();
    }
  } catch (const std::exception& error) {
    try {
      report(TrappedText(prefix, error), level);
    } catch (...) {  // a listener that throws has had its report
    }
    return {};
  } catch (...) {
    return {};
  }
}

/// Runs one step of a routine that ignores every error: a step that fails does not stop the next.
template <class Step>
void IgnoreErrors(Step&& step) noexcept {
  try {
    std::forward<Step>(step)();
  } catch (...) {
    if (Tracing()) TraceIgnored();
  }
}

}  // namespace tavrix::host
