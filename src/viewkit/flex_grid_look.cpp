// Colours, fonts, measures.

#include "viewkit/flex_grid_state.h"

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
  Update([&](State& s) {
    s.measure = measure == nullptr ? &PlainTextMeasure() : measure;
    s.StructureChanged();
  });
}

const TextMeasure& FlexGrid::Measure() const {
  return *state_->measure;
}

}  // namespace tavrix::viewkit
