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

using Order = std::vector<int>;

/// Where the ascending runs of the rows begin, the number of rows behind them; no more than `most`
/// runs are looked for.
template <class KeyOf, class Less>
std::vector<int> Runs(int count, int most, const KeyOf& key, const Less& less) {
  std::vector<int> starts{0};
  auto previous = key(0);
  for (int row = 1; row < count && CountOf(starts) <= most; ++row) {
    const auto current = key(row);
    if (less(current, previous)) starts.push_back(row);
    previous = current;
  }
  starts.push_back(count);
  return starts;
}

/// Rows are in order, or nearly so: after one edit there are two or three runs to merge.
template <class KeyOf, class Less>
Order OrderBy(int count, const KeyOf& key, const Less& less) {
  constexpr int kFewRuns = 8;
  if (count < 2) return {};
  const std::vector<int> starts = Runs(count, kFewRuns, key, less);
  const int runs = CountOf(starts) - 1;
  if (runs < 2) return {};
  const auto by_key = [&](int a, int b) { return less(key(a), key(b)); };
  Order order(SizeOf(count));
  std::iota(order.begin(), order.end(), 0);
  if (runs > kFewRuns) {
    std::stable_sort(order.begin(), order.end(), by_key);
    return order;
  }
  for (int run = 1; run < runs; ++run) {
    const auto middle = order.begin() + ItemAt(starts, run);
    const auto end = order.begin() + ItemAt(starts, run + 1);
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
Order OrderBy(int count, bool descending, const KeyOf& key, const Compare& compare) {
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

std::vector<int> SortedOrder(const CellStore& cells, int col, SortOrder order, int first, int count,
                             ColumnType type) {
  const bool descending = IsDescending(order);
  const auto text = [&](int row) { return cells.Text(first + row, col); };
  switch (order) {
    case SortOrder::kStringAscending:
    case SortOrder::kStringDescending:
      return OrderBy(count, descending, text, host::CompareText);
    case SortOrder::kStringNoCaseAscending:
    case SortOrder::kStringNoCaseDescending:
      return OrderBy(count, descending, text, host::CompareNoCase);
    case SortOrder::kNumericAscending:
    case SortOrder::kNumericDescending: {
      std::vector<double> numbers;
      numbers.reserve(SizeOf(count));
      for (int row = 0; row < count; ++row) numbers.push_back(CellNumber(text(row)));
      return OrderBy(
          count, descending, [&](int row) { return ItemAt(numbers, row); }, CompareNumbers);
    }
    case SortOrder::kGenericAscending:
    case SortOrder::kGenericDescending: {
      constexpr double kText = std::numeric_limits<double>::infinity();  // behind all numbers
      std::vector<double> numbers;
      numbers.reserve(SizeOf(count));
      for (int row = 0; row < count; ++row) {
        numbers.push_back(NumberOf(text(row), type).value_or(kText));
      }
      const auto compare = [&](int a, int b) {
        const double number = ItemAt(numbers, a);
        const int by_number = CompareNumbers(number, ItemAt(numbers, b));
        return by_number != 0 || number != kText ? by_number
                                                 : host::CompareNoCase(text(a), text(b));
      };
      return OrderBy(
          count, descending, [](int row) { return row; }, compare);
    }
    case SortOrder::kNone:
      break;
  }
  return {};
}

}  // namespace tavrix::viewkit
