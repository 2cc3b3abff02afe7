#pragma once

#include <string>
#include <utility>

#include "host/report.h"
#include "picker/sel_kjkm.h"

namespace tavrix::picker {

template <class Body>
host::TrapResult<Body> selKjkm::Trapped(Body&& body) noexcept {
  const auto show = [this](const std::string& text, std::int32_t) { ShowError(text); };
  return host::Trap(show, "", host::kCommandError, std::forward<Body>(body));
}

}  // namespace tavrix::picker
