#include "component/controls/grid_object.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "host/grid_update.h"

namespace tavrix::component {

namespace {

using viewkit::FlexGrid;

// The numbers that callers know by name are the model's.
static_assert(tvxAlignGeneral == static_cast<int>(viewkit::Alignment::kGeneral) &&
              tvxAlignCenterTop == static_cast<int>(viewkit::Alignment::kCenterTop) &&
              tvxAlignRightCenter == static_cast<int>(viewkit::Alignment::kRightCenter) &&
              tvxSortStringDescending == static_cast<int>(viewkit::SortOrder::kStringDescending) &&
              tvxSortNumericAscending == static_cast<int>(viewkit::SortOrder::kNumericAscending) &&
              tvxSelectionListBox == static_cast<int>(viewkit::SelectionMode::kListBox) &&
              tvxDataBoolean == static_cast<int>(viewkit::ColumnType::kBoolean) &&
              tvxDataDate == static_cast<int>(viewkit::ColumnType::kDate));

/// Row and column numbers are ints everywhere on Windows.
int Number(long number) {
  return static_cast<int>(number);
}

/// What `IGridRows` adds up for a row.
enum RowState : BYTE { kHidden = 1, kCollapsed = 2, kShown = 4, kTotal = 8 };

struct RowPieces {
  std::vector<LONG> levels;
  std::vector<std::int32_t> ends;
  std::string text;
};
constexpr std::size_t kMaxText = 0x7FFFFFFF;
constexpr std::size_t kUsualText = 12;  // bytes of a cell, to begin with

struct ArrayDestroyer {
  void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using OwnedArray = std::unique_ptr<SAFEARRAY, ArrayDestroyer>;

/// A vector of Automation with these elements.
template <class Elements>
OwnedArray ArrayOf(VARTYPE type, const Elements& elements) {
  OwnedArray array(SafeArrayCreateVector(type, 0, static_cast<ULONG>(elements.size())));
  if (!array) throw com::ComFailure(E_OUTOFMEMORY);
  if (elements.size() > 0) {
    std::memcpy(array->pvData, elements.data(), elements.size() * sizeof elements[0]);
  }
  return array;
}

/// The elements of a vector of bytes that a caller owns.
std::span<const BYTE> BytesOf(SAFEARRAY* array) {
  VARTYPE type = VT_EMPTY;
  if (array == nullptr || FAILED(SafeArrayGetVartype(array, &type)) || type != VT_UI1 ||
      SafeArrayGetDim(array) != 1) {
    throw com::ComFailure(E_INVALIDARG);
  }
  return {static_cast<const BYTE*>(array->pvData), array->rgsabound[0].cElements};
}

/// The rows that a caller means: those from `first` on, as many as there are of `rows`.
struct RowRange {
  RowRange(const FlexGrid& grid, long first, long rows) {
    if (first < 0 || rows < 0 || first > grid.Rows()) throw com::ComFailure(E_INVALIDARG);
    begin = Number(first);
    end = begin + std::min(Number(rows), grid.Rows() - begin);
  }
  int begin;
  int end;
};

viewkit::SortOrder Order(long number) {
  constexpr auto kLast = static_cast<long>(viewkit::SortOrder::kStringDescending);
  if (number < 0 || number > kLast) throw com::ComFailure(E_INVALIDARG);
  return static_cast<viewkit::SortOrder>(number);
}

}  // namespace

HRESULT GridObject::Get(int (Grid::*get)() const, long* result, const char* member) noexcept {
  return With([&](Grid& grid) { com::Out(result) = (grid.*get)(); }, member);
}

HRESULT GridObject::Get(int (Grid::*get)(int) const, long index, long* result,
                        const char* member) noexcept {
  return With([&](Grid& grid) { com::Out(result) = (grid.*get)(Number(index)); }, member);
}

HRESULT GridObject::Get(bool (Grid::*get)(int) const, long index, VARIANT_BOOL* result,
                        const char* member) noexcept {
  return With([&](Grid& grid) { com::Out(result) = com::Flag((grid.*get)(Number(index))); },
              member);
}

HRESULT GridObject::Set(void (Grid::*set)(int), long value, const char* member) noexcept {
  return With([&](Grid& grid) { (grid.*set)(Number(value)); }, member);
}

HRESULT GridObject::Set(void (Grid::*set)(int, bool), long index, VARIANT_BOOL value,
                        const char* member) noexcept {
  return With([&](Grid& grid) { (grid.*set)(Number(index), value != VARIANT_FALSE); }, member);
}

HRESULT GridObject::GetRows(long first, long rows, SAFEARRAY** levels, SAFEARRAY** ends,
                            SAFEARRAY** text) noexcept {
  return With([&](FlexGrid& grid) {
    for (SAFEARRAY** result : {levels, ends, text}) com::Out(result) = nullptr;
    const auto [begin, end] = RowRange(grid, first, rows);
    std::vector<int> cols;
    for (int col = 0; col < grid.Cols(); ++col) {
      if (!grid.ColHidden(col)) cols.push_back(col);
    }
    const auto count = static_cast<std::size_t>(end - begin);
    RowPieces pieces;
    pieces.levels.reserve(count);
    pieces.ends.reserve(count * cols.size());
    pieces.text.reserve(count * cols.size() * kUsualText);
    for (int row = begin; row < end; ++row) {
      pieces.levels.push_back(grid.IsSubtotal(row) ? grid.RowOutlineLevel(row) : -1);
    }
    grid.AppendTexts(begin, end, cols, pieces.text, pieces.ends);
    if (pieces.text.size() > kMaxText) throw com::ComFailure(E_OUTOFMEMORY);
    auto made_levels = ArrayOf(VT_I4, pieces.levels);
    auto made_ends = ArrayOf(VT_I4, pieces.ends);
    auto made_text = ArrayOf(VT_UI1, pieces.text);
    *levels = made_levels.release();
    *ends = made_ends.release();
    *text = made_text.release();
  });
}

HRESULT GridObject::TextVersion(hyper* result) noexcept {
  return With([&](FlexGrid& grid) { com::Out(result) = static_cast<hyper>(grid.TextVersion()); });
}

HRESULT GridObject::GetStates(long first, long rows, SAFEARRAY** states) noexcept {
  return With([&](FlexGrid& grid) {
    com::Out(states) = nullptr;
    const auto [begin, end] = RowRange(grid, first, rows);
    std::vector<BYTE> made;
    made.reserve(static_cast<std::size_t>(end - begin));
    for (int row = begin; row < end; ++row) {
      const int state = (grid.RowHidden(row) ? kHidden : 0) |
                        (grid.IsCollapsed(row) ? kCollapsed : 0) |
                        (grid.IsShown(row) ? kShown : 0) | (grid.IsTotalRow(row) ? kTotal : 0);
      made.push_back(static_cast<BYTE>(state));
    }
    *states = ArrayOf(VT_UI1, made).release();
  });
}

HRESULT GridObject::SetStates(long first, SAFEARRAY* states) noexcept {
  return With([&](FlexGrid& grid) {
    const std::span<const BYTE> given = BytesOf(states);
    const auto [begin, end] = RowRange(grid, first, static_cast<long>(given.size()));
    if (end - begin != std::ssize(given)) throw com::ComFailure(E_INVALIDARG);
    const host::GridUpdate update(grid);
    for (int row = begin; row < end; ++row) {
      const BYTE state = given[static_cast<std::size_t>(row - begin)];
      grid.SetRowHidden(row, (state & kHidden) != 0);
      if (const bool collapsed = (state & kCollapsed) != 0; collapsed != grid.IsCollapsed(row)) {
        grid.SetCollapsed(row, collapsed);
      }
    }
  });
}

HRESULT GridObject::get_TextMatrix(long row, long col, BSTR* result) noexcept {
  return With([&](FlexGrid& grid) { GiveText(result, grid.TextMatrix(Number(row), Number(col))); });
}

HRESULT GridObject::put_Row(long value) noexcept {
  return With([&](FlexGrid& grid) {
    // The value that stands changes nothing: not the other rows selected either.
    if (grid.Row() != Number(value)) grid.SetRow(Number(value));
  });
}

HRESULT GridObject::put_ColWidth(long col, long value) noexcept {
  return With([&](FlexGrid& grid) { grid.SetColWidth(Number(col), Number(value)); });
}

HRESULT GridObject::get_ColAlignment(long col, long* result) noexcept {
  return With([&](FlexGrid& grid) {
    com::Out(result) = static_cast<long>(grid.ColAlignment(Number(col)));
  });
}

HRESULT GridObject::get_ColDataType(long col, long* result) noexcept {
  return With(
      [&](FlexGrid& grid) { com::Out(result) = static_cast<long>(grid.ColDataType(Number(col))); });
}

HRESULT GridObject::get_ColFormat(long col, BSTR* result) noexcept {
  return With([&](FlexGrid& grid) { GiveText(result, grid.ColFormat(Number(col))); });
}

HRESULT GridObject::get_Sort(long* result) noexcept {
  return With([&](FlexGrid& grid) { com::Out(result) = static_cast<long>(grid.Sort()); });
}

HRESULT GridObject::put_Sort(long value) noexcept {
  return With([&](FlexGrid& grid) {
    // The value that stands does nothing, for another current column neither.
    if (grid.Sort() != Order(value)) grid.SetSort(Order(value));
  });
}

HRESULT GridObject::get_SelectionMode(long* result) noexcept {
  return With([&](FlexGrid& grid) { com::Out(result) = static_cast<long>(grid.SelectionMode()); });
}

HRESULT GridObject::get_CellForeColor(long row, long col, OLE_COLOR* result) noexcept {
  return With(
      [&](FlexGrid& grid) { com::Out(result) = grid.CellForeColor(Number(row), Number(col)); });
}

HRESULT GridObject::get_CellBackColor(long row, long col, OLE_COLOR* result) noexcept {
  return With(
      [&](FlexGrid& grid) { com::Out(result) = grid.CellBackColor(Number(row), Number(col)); });
}

HRESULT GridObject::get_CellFontBold(long row, long col, VARIANT_BOOL* result) noexcept {
  return With([&](FlexGrid& grid) {
    com::Out(result) = com::Flag(grid.CellFontBold(Number(row), Number(col)));
  });
}

}  // namespace tavrix::component
