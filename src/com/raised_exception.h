#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/failure.h"
#include "host/non_copyable.h"

namespace tavrix::com {

/// An exception that an object has raised in `IDispatch::Invoke`, with the ownership of its texts.
class RaisedException : private host::NonCopyable {
 public:
  ~RaisedException();
  /// For the call's out-parameter.
  [[nodiscard]] EXCEPINFO* Put() { return &info_; }
  /// Its text, else the thread's, else the meaning of the code.
  [[nodiscard]] ComFailure Failure();

 private:
  [[nodiscard]] HRESULT Code() const;

  EXCEPINFO info_{};
};

}  // namespace tavrix::com
