#pragma once

#include <windows.h>

#include <chrono>

namespace desk::app {

/// By the user's own clock.
[[nodiscard]] inline std::chrono::year_month_day Today() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {std::chrono::year{now.wYear}, std::chrono::month{now.wMonth}, std::chrono::day{now.wDay}};
}

}  // namespace desk::app
