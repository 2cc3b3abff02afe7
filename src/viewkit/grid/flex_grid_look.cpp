// Colours, fonts, measures.

#include <algorithm>

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

const CellStyle& FlexGrid::State::StyleAt(int any_row, int any_col) const {
  CheckRow(any_row);
  CheckCol(any_col);
  return styles.Get(static_cast<std::size_t>(any_row), static_cast<std::size_t>(any_col));
}

void FlexGrid::State::SetStyle(int any_row, int any_col, const CellStyle& style) {
  const bool changed =
      styles.Set(static_cast<std::size_t>(any_row), static_cast<std::size_t>(any_col), style);
  if (changed) RowChanged(any_row);
}

const FlexGrid::Look& FlexGrid::GetLook() const {
  return state_->look;
}

void FlexGrid::SetLook(const Look& look) {
  if (look == state_->look) return;
  Update([&](State& s) {
    s.look = look;
    s.ContentChanged();
  });
}

Color FlexGrid::CellForeColor(int row, int col) const {
  return state_->StyleAt(row, col).fore;
}

Color FlexGrid::CellBackColor(int row, int col) const {
  return state_->StyleAt(row, col).back;
}

bool FlexGrid::CellFontBold(int row, int col) const {
  return state_->StyleAt(row, col).bold;
}

std::optional<Color> FlexGrid::CellForeColor(int row1, int col1, int row2, int col2) const {
  const Color color = CellForeColor(row1, col1);
  if (CellForeColor(row2, col2) != color) return std::nullopt;
  const auto [top, bottom] = std::minmax(row1, row2);
  const auto [left, right] = std::minmax(col1, col2);
  for (int row = top; row <= bottom; ++row) {
    for (int col = left; col <= right; ++col) {
      const auto place = static_cast<std::size_t>(row);
      if (state_->styles.Get(place, static_cast<std::size_t>(col)).fore != color)
        return std::nullopt;
    }
  }
  return color;
}

void FlexGrid::SetCellForeColor(int row, int col, Color color) {
  CellStyle style = state_->StyleAt(row, col);
  style.fore = color;
  Update([&](State& s) { s.SetStyle(row, col, style); });
}

void FlexGrid::SetCellBackColor(int row, int col, Color color) {
  CellStyle style = state_->StyleAt(row, col);
  style.back = color;
  Update([&](State& s) { s.SetStyle(row, col, style); });
}

void FlexGrid::SetCellFontBold(int row, int col, bool bold) {
  CellStyle style = state_->StyleAt(row, col);
  style.bold = bold;
  Update([&](State& s) { s.SetStyle(row, col, style); });
}

void FlexGrid::SetTextMeasure(const TextMeasure* measure) {
  const bool first_font = state_->measure == &PlainTextMeasure();
  Update([&](State& s) {
    s.measure = measure == nullptr ? &PlainTextMeasure() : measure;
    s.StructureChanged();
    if (first_font && s.measure != &PlainTextMeasure()) RefitColumns();
  });
}

/// A host may load a view before it gives it a window, and with it a font.
void FlexGrid::RefitColumns() {
  for (int col = 0; col < Cols(); ++col) {
    const State::Column& column = state_->At(col);
    if (column.fitted > 0 && column.fitted == column.width) AutoSize(col);
  }
}

const TextMeasure& FlexGrid::Measure() const {
  return *state_->measure;
}

}  // namespace tavrix::viewkit
