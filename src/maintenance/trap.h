#pragma once

#include <utility>

#include "host/report.h"
#include "maintenance/kjkm.h"

namespace tavrix::maintenance {

template <class Body>
host::TrapResult<Body> Kjkm::Trapped(std::string_view prefix, std::int32_t level,
                                     Body&& body) noexcept {
  const auto report = [this](const std::string& text, std::int32_t at) { Report(text, at); };
  return host::Trap(report, prefix, level, std::forward<Body>(body));
}

}  // namespace tavrix::maintenance
