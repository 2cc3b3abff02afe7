// Columns: widths, alignment, formats, sizing to the content; the header's format string.

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/text.h"
#include "viewkit/grid/flex_grid_state.h"
#include "viewkit/grid/grid_metrics.h"
#include "viewkit/grid/text_width.h"

namespace tavrix::viewkit {

namespace {

constexpr int kWidestColumn = 30'000;  // by sizing to the content
constexpr int kMaxWidth = 1'000'000;   // at all, so that the widths can be added up
/// Deeper levels are drawn no further to the right.
constexpr int kDeepestIndent = 100;

/// Room beside the text: padding, and a pixel lost to rounding on the screen.
constexpr int kBeside = 2 * grid_metrics::kCellPadding + kTwipsPerPixel;

void CheckAlignment(Alignment alignment) {
  if (alignment < Alignment::kLeftTop || alignment > Alignment::kGeneral) {
    throw std::out_of_range("no such alignment");
  }
}

Alignment AlignmentOf(char sign) {
  if (sign == '^') return Alignment::kCenterCenter;
  return sign == '>' ? Alignment::kRightCenter : Alignment::kLeftCenter;
}

}  // namespace

template <class Part, class Value, class Changed>
void FlexGrid::SetOfColumn(int col, Part part, Value value, Changed changed) {
  if (state_->columns.At(col).*part == value) return;
  Update([&](State& s) {
    s.columns.At(col).*part = std::move(value);
    (s.changes.*changed)();
  });
}

int FlexGrid::ColWidth(int col) const {
  return state_->columns.At(col).width;
}

void FlexGrid::SetColWidth(int col, int width) {
  width = width < 0 ? GridColumns::kDefaultWidth : std::min(width, kMaxWidth);
  SetOfColumn(col, &GridColumns::Column::width, width, &GridChanges::Columns);
}

bool FlexGrid::ColHidden(int col) const {
  return state_->columns.At(col).hidden;
}

void FlexGrid::SetColHidden(int col, bool hidden) {
  SetOfColumn(col, &GridColumns::Column::hidden, hidden, &GridChanges::Columns);
}

Alignment FlexGrid::ColAlignment(int col) const {
  return state_->columns.At(col).alignment;
}

void FlexGrid::SetColAlignment(int col, Alignment alignment) {
  CheckAlignment(alignment);
  SetOfColumn(col, &GridColumns::Column::alignment, alignment, &GridChanges::ColumnLook);
}

Alignment FlexGrid::FixedAlignment(int col) const {
  return state_->columns.At(col).fixed_alignment;
}

void FlexGrid::SetFixedAlignment(int col, Alignment alignment) {
  CheckAlignment(alignment);
  SetOfColumn(col, &GridColumns::Column::fixed_alignment, alignment, &GridChanges::ColumnLook);
}

ColumnType FlexGrid::ColDataType(int col) const {
  return state_->columns.At(col).type;
}

void FlexGrid::SetColDataType(int col, ColumnType type) {
  constexpr int kLast = 21;  // the last of the integers
  const int number = static_cast<int>(type);
  if (number < 0 || number > kLast) throw std::out_of_range("no such type of a column");
  SetOfColumn(col, &GridColumns::Column::type, type, &GridChanges::Content);
}

const std::string& FlexGrid::ColFormat(int col) const {
  return state_->columns.At(col).format;
}

void FlexGrid::SetColFormat(int col, std::string format) {
  SetOfColumn(col, &GridColumns::Column::format, std::move(format), &GridChanges::Content);
}

bool FlexGrid::MergeCol(int col) const {
  return state_->columns.At(col).merge;
}

void FlexGrid::SetMergeCol(int col, bool merge) {
  SetOfColumn(col, &GridColumns::Column::merge, merge, &GridChanges::ColumnLook);
}

void FlexGrid::SetFormatString(std::string_view format) {
  if (format.empty()) return;
  const auto count = static_cast<int>(std::count(format.begin(), format.end(), '|')) + 1;
  Update([&](State& s) {
    SetCols(std::max(Cols(), count));
    for (int col = 0; col < count; ++col) {
      const std::size_t end = std::min(format.find('|'), format.size());
      std::string_view title = format.substr(0, end);
      format.remove_prefix(std::min(end + 1, format.size()));
      if (!title.empty() && std::string_view("<^>").find(title[0]) != std::string_view::npos) {
        SetColAlignment(col, AlignmentOf(title[0]));
        title.remove_prefix(1);
      }
      SetColWidth(col, s.viewport.Measure().Width(title, false) + kBeside);
      if (s.rows.Fixed() > 0) SetTextMatrix(0, col, host::Trimmed(title));
    }
  });
}

void FlexGrid::AutoSize(int col) {
  const State& s = *state_;
  s.columns.Check(col);
  const TextMeasure& measure = s.viewport.Measure();
  const int fixed = s.rows.Fixed();
  const OutlineRows& outline = s.rows.Outline();
  const bool outlined = s.look.outline_bar != 0 && col == s.columns.Outline();
  const auto indent = [&](int data) {
    if (!outlined || !outline.IsNode(data)) return 0;
    return (std::min(outline.Level(data), kDeepestIndent) + 1) * grid_metrics::kOutlineIndent;
  };
  int widest = 0;
  const auto fit = [&](int row, int extra) {
    const int text = measure.Width(s.DisplayText(row, col), CellFontBold(row, col));
    widest = std::max(widest, text + extra);
  };

  for (int row = 0; row < fixed; ++row) fit(row, 0);
  WidestTexts widest_texts(measure);
  const bool formatted = !ColFormat(col).empty();
  const bool plain = s.rows.HasPlainStyles();
  const int rows = s.rows.DataRows();
  for (int data = 0; data < rows; ++data) {
    const bool bold = !plain && CellFontBold(data + fixed, col);
    if (formatted) {
      widest_texts.Offer(data, s.DisplayText(data + fixed, col), indent(data), bold);
    } else {
      widest_texts.Offer(data, s.rows.DataText(data, col), indent(data), bold);
    }
  }
  for (const auto& candidate : widest_texts.Candidates()) {
    fit(candidate.row + fixed, indent(candidate.row));
  }
  SetColWidth(col, std::min(widest + kBeside, kWidestColumn));
  state_->columns.At(col).fitted = ColWidth(col);
}

}  // namespace tavrix::viewkit
