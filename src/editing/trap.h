#pragma once

#include <utility>

#include "editing/fm_bkm_add.h"
#include "host/report.h"

namespace tavrix::editing {

template <class Body>
host::TrapResult<Body> FmBkmAdd::Trapped(std::string_view prefix, std::int32_t level,
                                         Body&& body) noexcept {
  const auto report = [this](const std::string& text, std::int32_t at) { Report(text, at); };
  return host::Trap(report, prefix, level, std::forward<Body>(body));
}

}  // namespace tavrix::editing
