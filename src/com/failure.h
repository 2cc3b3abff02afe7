#pragma once

#include <windows.h>

#include <string>

#include "host/error.h"

namespace tavrix::com {

/// A failure with its code. One that a host object raised is a failing call of the host like any
/// other; `what()` is its text (UTF-8).
class ComFailure : public host::HostError {
 public:
  ComFailure(HRESULT code, const std::string& text)
      : HostError(text), code_(code), own_text_(true) {}
  /// With the meaning of the code as text.
  explicit ComFailure(HRESULT code);
  [[nodiscard]] HRESULT Code() const { return code_; }
  /// Whether the text says more than the code.
  [[nodiscard]] bool HasOwnText() const { return own_text_; }

 private:
  HRESULT code_;
  bool own_text_ = false;
};

/// The system's text for a code, without the line end; the bare number when it has none.
[[nodiscard]] std::string MeaningOf(HRESULT code);

/// The failure of another object's member, with the text that it has left for the thread, else the
/// meaning of the code. Whoever calls clears the thread's text before the call.
[[nodiscard]] ComFailure FailureOfCall(HRESULT code);

/// Throws `ComFailure` when `result` is a failure.
void Check(HRESULT result);
/// As `Check`, for the result of another object's member.
void CheckCall(HRESULT result);

}  // namespace tavrix::com
