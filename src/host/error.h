#pragma once

#include <stdexcept>
#include <string>

namespace tavrix::host {

/// A call of the host that failed; `what()` is the host's own text (UTF-8), as users shall see it.
class HostError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tavrix::host
