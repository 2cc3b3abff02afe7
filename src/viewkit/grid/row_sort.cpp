#include "viewkit/grid/row_sort.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>
#include <string_view>

#include "host/text.h"
#include "viewkit/grid/date_format.h"
#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

namespace {

using Order = std::vector<std::uint32_t>;

/// Where the ascending runs of the rows begin, the number of rows behind them; no more than `most`
/// runs are looked for.
template <class KeyOf, class Less>
std::vector<std::uint32_t> Runs(std::uint32_t count, std::size_t most, const KeyOf& key,
                                const Less& less) {
  std::vector<std::uint32_t> starts{0};
  auto previous = key(0);
  for (std::uint32_t row = 1; row < count && starts.size() <= most; ++row) {
    const auto current = key(row);
    if (less(current, previous)) starts.push_back(row);
    previous = current;
  }
  starts.push_back(count);
  return starts;
}

/// Rows are in order, or nearly so: after one edit there are two or three runs to merge.
template <class KeyOf, class Less>
Order OrderBy(std::uint32_t count, const KeyOf& key, const Less& less) {
  constexpr std::size_t kFewRuns = 8;
  if (count < 2) return {};
  const std::vector<std::uint32_t> starts = Runs(count, kFewRuns, key, less);
  if (starts.size() <= 2) return {};
  const auto by_key = [&](std::uint32_t a, std::uint32_t b) { return less(key(a), key(b)); };
  Order order(count);
  std::iota(order.begin(), order.end(), 0U);
  if (starts.size() > kFewRuns + 1) {
    std::stable_sort(order.begin(), order.end(), by_key);
    return order;
  }
  for (std::size_t run = 1; run + 1 < starts.size(); ++run) {
    const auto middle = order.begin() + starts[run];
    const auto end = order.begin() + starts[run + 1];
    const auto first = std::upper_bound(order.begin(), middle, *middle, by_key);
    if (first != middle && by_key(*(end - 1), *first)) {
      std::rotate(first, middle, end);  // a run that fits between two rows, as a single row does
    } else {
      std::inplace_merge(first, middle, end, by_key);
    }
  }
  return order;
}

template <class KeyOf, class Compare>
Order OrderBy(std::uint32_t count, bool descending, const KeyOf& key, const Compare& compare) {
  if (descending) {
    return OrderBy(count, key, [&](auto a, auto b) { return compare(b, a) < 0; });
  }
  return OrderBy(count, key, [&](auto a, auto b) { return compare(a, b) < 0; });
}

int CompareNumbers(double a, double b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

/// What the generic orders put before the texts.
std::optional<double> NumberOf(std::string_view text, ColumnType type) {
  if (type == ColumnType::kString) return std::nullopt;
  if (type != ColumnType::kDate) return WholeNumber(text);
  const auto date = DateOf(text);
  return date ? std::optional(SerialOf(*date)) : std::nullopt;
}

bool IsDescending(SortOrder order) {
  return static_cast<int>(order) % 2 == 0;
}

}  // namespace

std::vector<std::uint32_t> SortedOrder(const CellStore& cells, std::size_t col, SortOrder order,
                                       std::size_t first, std::size_t count, ColumnType type) {
  const auto rows = static_cast<std::uint32_t>(count);
  const bool descending = IsDescending(order);
  const auto text = [&](std::uint32_t row) { return cells.Text(first + row, col); };
  switch (order) {
    case SortOrder::kStringAscending:
    case SortOrder::kStringDescending:
      return OrderBy(rows, descending, text, host::CompareText);
    case SortOrder::kStringNoCaseAscending:
    case SortOrder::kStringNoCaseDescending:
      return OrderBy(rows, descending, text, host::CompareNoCase);
    case SortOrder::kNumericAscending:
    case SortOrder::kNumericDescending: {
      std::vector<double> numbers(count);
      for (std::uint32_t row = 0; row < rows; ++row) numbers[row] = CellNumber(text(row));
      return OrderBy(
          rows, descending, [&](std::uint32_t row) { return numbers[row]; }, CompareNumbers);
    }
    case SortOrder::kGenericAscending:
    case SortOrder::kGenericDescending: {
      constexpr double kText = std::numeric_limits<double>::infinity();  // behind all numbers
      std::vector<double> numbers(count);
      for (std::uint32_t row = 0; row < rows; ++row) {
        numbers[row] = NumberOf(text(row), type).value_or(kText);
      }
      const auto compare = [&](std::uint32_t a, std::uint32_t b) {
        const int by_number = CompareNumbers(numbers[a], numbers[b]);
        return by_number != 0 || numbers[a] != kText ? by_number
                                                     : host::CompareNoCase(text(a), text(b));
      };
      return OrderBy(
          rows, descending, [](std::uint32_t row) { return row; }, compare);
    }
    case SortOrder::kNone:
      break;
  }
  return {};
}

}  // namespace tavrix::viewkit
