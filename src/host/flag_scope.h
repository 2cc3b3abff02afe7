#pragma once

#include <utility>

#include "host/non_copyable.h"

namespace tavrix::host {

/// Sets a flag for the length of a scope and puts the old value back.
class FlagScope : private NonCopyable {
 public:
  explicit FlagScope(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~FlagScope() { flag_ = before_; }

 private:
  bool& flag_;
  bool before_;
};

}  // namespace tavrix::host
