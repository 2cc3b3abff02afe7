#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// Dates as users type and read them.
namespace desk::views {

/// "2024-03-01".
[[nodiscard]] std::string DateText(std::chrono::year_month_day date);

/// The day that is typed: "2024-3-1", "2024.3.1", "20240301"; of a month ("2024-3", "202403") or a
/// year alone its first day, or its last. Nothing for what is no day of the calendar.
[[nodiscard]] std::optional<std::chrono::year_month_day> ParseDate(std::string_view text,
                                                                   bool last_day);

}  // namespace desk::views
