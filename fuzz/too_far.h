#pragma once

#include <stdexcept>
#include <string>

namespace tavrix::fuzz {

/// An accepted statement touched what callers may not reach.
class TooFar : public std::runtime_error {
 public:
  explicit TooFar(const std::string& what) : std::runtime_error(what) {}
};

inline void RequireNear(bool near, const std::string& what) {
  if (!near) throw TooFar(what);
}

}  // namespace tavrix::fuzz
