#pragma once

namespace tavrix::host {

/// Base of what is one of its kind, such as the owner of a handle or the state of a scope: it can
/// be neither copied nor moved.
class NonCopyable {
 public:
  NonCopyable(const NonCopyable&) = delete;
  NonCopyable& operator=(const NonCopyable&) = delete;

 protected:
  NonCopyable() = default;
  ~NonCopyable() = default;
};

}  // namespace tavrix::host
