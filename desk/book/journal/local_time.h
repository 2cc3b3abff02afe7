#pragma once

#include <string>

namespace desk::book {

/// A time of the history, which is in UTC, by this machine's clock: "2026-11-22 19:30" for
/// "2026-11-22 11:30:05". Any other text as it is.
[[nodiscard]] std::string LocalTime(const std::string& utc);

}  // namespace desk::book
