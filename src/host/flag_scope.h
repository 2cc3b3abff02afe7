#pragma once

#include <utility>

namespace tavrix::host {

/// Sets a flag for the length of a scope and puts the old value back.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = before_; }

 private:
  bool& flag_;
  bool before_;
};

}  // namespace tavrix::host
