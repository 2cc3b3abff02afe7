#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Amounts as users write and read them: hundredths of the currency's unit.
namespace desk::book {

/// "1,234.5" is 123450. Blanks around it, separators between digits, one sign and at most two
/// places are accepted; an empty text is 0; nothing for anything else, or what no book can hold.
[[nodiscard]] std::optional<std::int64_t> ParseMoney(std::string_view text);

/// Why `ParseMoney` gives nothing for `text`, for users; empty when it gives an amount.
[[nodiscard]] std::string WhyNoMoney(std::string_view text);

/// 123450 is "1,234.50".
[[nodiscard]] std::string MoneyText(std::int64_t hundredths);
/// 1234 is "1,234".
[[nodiscard]] std::string CountText(std::int64_t count);

}  // namespace desk::book
