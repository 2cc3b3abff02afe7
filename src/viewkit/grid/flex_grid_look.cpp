// Colours, fonts, measures.

#include <algorithm>

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

const FlexGrid::Look& FlexGrid::GetLook() const {
  return state_->look;
}

void FlexGrid::SetLook(const Look& look) {
  if (look == state_->look) return;
  Update([&](State& s) {
    s.look = look;
    s.changes.Content();
  });
}

const CellStyle& FlexGrid::StyleAt(int row, int col) const {
  state_->rows.CheckRow(row);
  state_->columns.Check(col);
  return state_->rows.Style(row, col);
}

template <class Field>
void FlexGrid::SetStyle(int row, int col, Field CellStyle::*field, Field value) {
  CellStyle style = StyleAt(row, col);
  style.*field = value;
  Update([&](State& s) {
    if (s.rows.SetStyle(row, col, style)) s.changes.Row(row);
  });
}

Color FlexGrid::CellForeColor(int row, int col) const {
  return StyleAt(row, col).fore;
}

Color FlexGrid::CellBackColor(int row, int col) const {
  return StyleAt(row, col).back;
}

bool FlexGrid::CellFontBold(int row, int col) const {
  return StyleAt(row, col).bold;
}

std::optional<Color> FlexGrid::CellForeColor(int row1, int col1, int row2, int col2) const {
  const Color color = CellForeColor(row1, col1);
  if (CellForeColor(row2, col2) != color) return std::nullopt;
  const auto [top, bottom] = std::minmax(row1, row2);
  const auto [left, right] = std::minmax(col1, col2);
  for (int row = top; row <= bottom; ++row) {
    for (int col = left; col <= right; ++col) {
      if (state_->rows.Style(row, col).fore != color) return std::nullopt;
    }
  }
  return color;
}

void FlexGrid::SetCellForeColor(int row, int col, Color color) {
  SetStyle(row, col, &CellStyle::fore, color);
}

void FlexGrid::SetCellBackColor(int row, int col, Color color) {
  SetStyle(row, col, &CellStyle::back, color);
}

void FlexGrid::SetCellFontBold(int row, int col, bool bold) {
  SetStyle(row, col, &CellStyle::bold, bold);
}

void FlexGrid::SetTextMeasure(const TextMeasure* measure) {
  Update([&](State& s) {
    const bool first_font = s.viewport.SetMeasure(measure);
    s.changes.Structure();
    if (first_font) RefitColumns();
  });
}

/// A host may load a view before it gives it a window, and with it a font.
void FlexGrid::RefitColumns() {
  for (int col = 0; col < Cols(); ++col) {
    const GridColumns::Column& column = state_->columns.At(col);
    if (column.fitted > 0 && column.fitted == column.width) AutoSize(col);
  }
}

const TextMeasure& FlexGrid::Measure() const {
  return state_->viewport.Measure();
}

}  // namespace tavrix::viewkit
