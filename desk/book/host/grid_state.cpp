#include "book/host/grid_state.h"

#include <algorithm>

#include "host/grid_update.h"
#include "host/text.h"

namespace desk::book {

namespace {

constexpr int kCode = 0;

bool IsDataRow(const host::Grid& grid, int row) {
  return row >= grid.FixedRows() && row < grid.Rows();
}

std::string CodeOf(const host::Grid& grid, int row) {
  return IsDataRow(grid, row) ? std::string(grid.TextMatrix(row, kCode)) : std::string();
}

/// Open, and something is below it: whether a leaf is open cannot be seen.
bool IsOpenNode(const host::Grid& grid, int row) {
  return !grid.IsCollapsed(row) && row + 1 < grid.Rows() && grid.IsSubtotal(row) &&
         grid.RowOutlineLevel(row + 1) > grid.RowOutlineLevel(row);
}

bool Before(std::string_view left, std::string_view right) {
  return host::CompareText(left, right) < 0;
}

/// The row of `code`, or the first behind its place; the number of rows when there is none. Sought
/// in steps that grow, near `first` at the start: rows far apart are dear to read through COM.
int RowAt(const host::Grid& grid, int first, std::string_view code) {
  const auto before = [&](int row) { return Before(grid.TextMatrix(row, kCode), code); };
  const int rows = grid.Rows();
  int end = first;
  for (int step = 1; end < rows && before(end); step *= 2) {
    first = end + 1;
    end = std::min(rows, end + step);
  }
  while (first < end) {
    const int middle = first + (end - first) / 2;
    if (before(middle)) {
      first = middle + 1;
    } else {
      end = middle;
    }
  }
  return first;
}

/// What is open only here, such as what a filter has opened, closes.
void CloseOthers(host::Grid& grid, const std::vector<std::string>& open) {
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (!IsOpenNode(grid, row)) continue;
    const std::string_view code = grid.TextMatrix(row, kCode);
    if (!std::ranges::binary_search(open, code, Before)) grid.SetCollapsed(row, true);
  }
}

void OpenNodes(host::Grid& grid, const std::vector<std::string>& open) {
  int row = grid.FixedRows();
  for (const std::string& code : open) {
    row = RowAt(grid, row, code);
    if (row >= grid.Rows()) return;
    if (grid.TextMatrix(row, kCode) == code) grid.SetCollapsed(row, false);
  }
}

}  // namespace

GridState GridState::Of(const host::Grid& grid) {
  GridState state{.current = CodeOf(grid, grid.Row()), .top = CodeOf(grid, grid.TopRow())};
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (IsOpenNode(grid, row)) state.open.push_back(CodeOf(grid, row));
  }
  return state;
}

void GridState::PutBack(host::Grid& grid) const {
  const int first = grid.FixedRows();
  const int last = grid.Rows() - 1;
  if (last < first) return;
  const host::GridUpdate update(grid);
  CloseOthers(grid, open);
  OpenNodes(grid, open);
  if (!current.empty()) grid.SetRow(std::min(RowAt(grid, first, current), last));
  if (!top.empty()) grid.SetTopRow(std::min(RowAt(grid, first, top), last));
}

}  // namespace desk::book
