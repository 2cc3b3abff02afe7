#include "views/date_text.h"

#include <array>
#include <cstdio>
#include <vector>

#include "host/text.h"

namespace desk::views {

namespace {

/// The groups of digits; nothing where there is anything else than what parts them.
std::optional<std::vector<std::string>> Groups(std::string_view text) {
  std::vector<std::string> groups(1);
  for (const char unit : tavrix::host::Trimmed(text)) {
    if (tavrix::host::IsDigit(unit)) {
      groups.back() += unit;
    } else if (unit == '-' || unit == '/' || unit == '.') {
      groups.emplace_back();
    } else {
      return std::nullopt;
    }
  }
  return groups;
}

/// "20240301" and "202403" have no marks between their parts.
void Part(std::vector<std::string>& groups) {
  constexpr std::size_t kYear = 4;
  const std::string all = groups.front();
  if (groups.size() != 1 || all.size() <= kYear) return;
  groups = {all.substr(0, kYear), all.substr(kYear, 2)};
  if (all.size() > kYear + 2) groups.push_back(all.substr(kYear + 2));
}

}  // namespace

std::string DateText(std::chrono::year_month_day date) {
  std::array<char, 40> text;
  const int length =
      std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return {text.data(), static_cast<std::size_t>(length)};
}

std::optional<std::chrono::year_month_day> ParseDate(std::string_view text, bool last_day) {
  namespace chrono = std::chrono;
  auto groups = Groups(text);
  if (!groups) return std::nullopt;
  Part(*groups);
  if (groups->size() > 3 || groups->front().size() != 4) return std::nullopt;
  std::array<unsigned, 3> numbers = {0, last_day ? 12U : 1U, 1};
  for (std::size_t i = 0; i < groups->size(); ++i) {
    const std::string& group = groups->at(i);
    if (group.empty() || group.size() > 4) return std::nullopt;
    numbers.at(i) = static_cast<unsigned>(std::stoul(group));
  }
  const chrono::year_month month{chrono::year(static_cast<int>(numbers[0])),
                                 chrono::month(numbers[1])};
  const chrono::year_month_day date =
      last_day && groups->size() < 3
          ? chrono::year_month_day(
                chrono::year_month_day_last(month.year(), chrono::month_day_last(month.month())))
          : chrono::year_month_day(month.year(), month.month(), chrono::day(numbers[2]));
  return month.ok() && date.ok() ? std::optional(date) : std::nullopt;
}

}  // namespace desk::views
