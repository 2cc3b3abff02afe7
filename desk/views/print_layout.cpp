#include "views/print_layout.h"

#include <algorithm>
#include <numeric>

#include "views/print_page.h"
#include "views/print_wrap.h"

namespace desk::views {

namespace {

constexpr int kSizeStep = 5;
// As long as this size does, columns that wrap keep their width.
constexpr int kGoodSize = 160;
// A column that wraps is never narrower, at `kPrintSize`, unless its texts are.
constexpr int kNarrow = 2000;
constexpr int kIndentStep = 160;
constexpr int kMaxIndent = 1600;
constexpr int kMaxLines = 12;

int Sum(const std::vector<int>& widths) {
  return std::accumulate(widths.begin(), widths.end(), 0);
}

int Scaled(int length, int size) {
  return (length * size + kPrintSize - 1) / kPrintSize;
}

std::vector<int> Scaled(std::vector<int> widths, int size) {
  for (int& width : widths) width = Scaled(width, size);
  return widths;
}

/// Widths between `narrow` and `natural` that together are `room`, as near to `natural` as that
/// allows.
std::vector<int> Between(const std::vector<int>& narrow, const std::vector<int>& natural,
                         int room) {
  const long long wish = Sum(natural) - Sum(narrow);
  const long long more = room - Sum(narrow);
  std::vector<int> widths = narrow;
  for (std::size_t col = 0; col < widths.size() && wish > 0; ++col) {
    widths[col] += static_cast<int>((natural[col] - narrow[col]) * more / wish);
  }
  return widths;
}

}  // namespace

PrintLayout::PrintLayout(const PrintTable& table, const Paper& paper,
                         const viewkit::TextMeasure& measure)
    : table_(table), paper_(paper), measure_(measure) {
  FitColumns();
  PlaceParts();
  CountLines();
  BreakPages();
}

int PrintLayout::Width(std::string_view text, bool bold, int size) const {
  return Scaled(measure_.Width(text, bold), size);
}

int PrintLayout::LineHeight(int size) const {
  return Scaled(measure_.LineHeight(), size);
}

int PrintLayout::RowHeight(int lines) const {
  return lines * LineHeight(size_) + Padding();
}

int PrintLayout::Indent(const PrintRow& row, std::size_t col) const {
  if (!table_.columns[col].indented) return 0;
  const int indent = Scaled(std::min(row.level * kIndentStep, kMaxIndent), size_);
  return widths_.empty() ? indent : std::min(indent, widths_[col] / 3);
}

std::vector<int> PrintLayout::NaturalWidths() const {
  std::vector<int> widths;
  for (std::size_t col = 0; col < table_.columns.size(); ++col) {
    int widest = measure_.Width(table_.columns[col].caption, true);
    for (const PrintRow& row : table_.rows) {
      widest = std::max(widest, measure_.Width(row.cells.at(col), row.bold) + Indent(row, col));
    }
    widths.push_back(widest + 2 * Padding());
  }
  return widths;
}

void PrintLayout::FitColumns() {
  const std::vector<int> natural = NaturalWidths();
  std::vector<int> narrow = natural;
  for (std::size_t col = 0; col < narrow.size(); ++col) {
    if (table_.columns[col].wraps) narrow[col] = std::min(narrow[col], kNarrow);
  }
  const int room = paper_.InnerWidth();
  const auto fits = [&](const std::vector<int>& widths, int least) {
    for (size_ = kPrintSize; size_ >= least; size_ -= kSizeStep) {
      if (Sum(Scaled(widths, size_)) <= room) return true;
    }
    return false;
  };
  if (fits(natural, kGoodSize)) return TakeWidths(Scaled(natural, size_));
  if (fits(narrow, kSmallestPrintSize)) {
    return TakeWidths(Between(Scaled(narrow, size_), Scaled(natural, size_), room));
  }
  size_ = kSmallestPrintSize;
  crowded_ = true;
  TakeWidths(narrow);
}

/// In proportion, so that together they are as wide as the page.
void PrintLayout::TakeWidths(const std::vector<int>& wanted) {
  const long long all = std::max(1, Sum(wanted));
  const long long room = paper_.InnerWidth();
  long long edge = 0;
  int left = 0;
  for (const int width : wanted) {
    edge += width;
    const int right = static_cast<int>(edge * room / all);
    widths_.push_back(right - left);
    left = right;
  }
}

void PrintLayout::PlaceParts() {
  const auto width = [&](const std::string& text) { return Width(text, false, kPrintSize); };
  const int line = LineHeight(kPrintSize);
  const int room = paper_.InnerWidth();
  const int beside = std::max(width(table_.left), width(table_.right));
  stacked_ = 2 * beside + width(table_.middle) + 2 * kPrintSize > room;
  captions_top_ = paper_.top + LineHeight(kTitleSize) + kPrintSize / 2;
  captions_top_ += (stacked_ ? 3 : 1) * line + kPrintSize / 3;
  for (std::size_t col = 0; col < table_.columns.size(); ++col) {
    const auto lines = CellLines(table_.columns[col].caption, widths_[col] - 2 * Padding(), true);
    caption_lines_ = std::max(caption_lines_, static_cast<int>(lines.size()));
  }
  body_top_ = captions_top_ + RowHeight(caption_lines_);
  body_bottom_ = paper_.height - paper_.bottom - line - kPrintSize / 2;
  const int rows = (body_bottom_ - body_top_ - Padding()) / LineHeight(size_);
  most_lines_ = std::clamp(rows, 1, kMaxLines);
}

std::vector<std::string> PrintLayout::CellLines(const std::string& text, int width,
                                                bool bold) const {
  const WidthOf width_of = [&](std::string_view part) { return Width(part, bold, size_); };
  if (width_of(text) <= width) return {text};
  std::vector<std::string> lines = WrapText(text, width, width_of);
  const auto most = static_cast<std::size_t>(most_lines_);
  if (lines.size() <= most) return lines;
  lines.resize(most);
  lines.back() = CutText(lines.back() + "……", width, width_of);
  return lines;
}

void PrintLayout::CountLines() {
  row_lines_.reserve(table_.rows.size());
  for (const PrintRow& row : table_.rows) {
    std::size_t most = 1;
    for (std::size_t col = 0; col < widths_.size(); ++col) {
      const int width = widths_[col] - 2 * Padding() - Indent(row, col);
      most = std::max(most, CellLines(row.cells[col], width, row.bold).size());
    }
    row_lines_.push_back(static_cast<int>(most));
  }
}

bool PrintLayout::Bound(std::size_t row) const {
  return table_.rows[row].keep_with_previous || table_.rows[row - 1].keep_with_next;
}

/// Rows that stay together are parted all the same where they are more than a page.
std::size_t PrintLayout::EndOfPage(std::size_t start) const {
  int y = body_top_;
  std::size_t end = start;
  while (end < table_.rows.size()) {
    y += RowHeight(row_lines_[end]);
    if (y > body_bottom_ && end > start) break;
    ++end;
  }
  if (end == table_.rows.size()) return end;
  std::size_t parted = end;
  while (parted > start && Bound(parted)) --parted;
  return parted > start ? parted : end;
}

void PrintLayout::BreakPages() {
  starts_ = {0};
  do {
    starts_.push_back(EndOfPage(starts_.back()));
  } while (starts_.back() < table_.rows.size());
}

std::vector<std::string> PrintLayout::SpokenPage(int page) const {
  return PrintPageMaker(*this).Spoken(page);
}

PrintPage PrintLayout::Page(int page) const {
  return PrintPageMaker(*this).Make(page);
}

}  // namespace desk::views
