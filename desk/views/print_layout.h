#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "viewkit/ports.h"
#include "views/print_table.h"

/// How a table comes on pages. Lengths are twips, from the upper left corner of the paper.
namespace desk::views {

namespace viewkit = tavrix::viewkit;

struct Paper {
  int width = 11906;  ///< A4
  int height = 16838;
  int left = 850;  ///< the margins
  int top = 850;
  int right = 850;
  int bottom = 850;
  [[nodiscard]] int InnerWidth() const { return width - left - right; }
};

enum class PrintColor { kBlack, kRed };

struct PrintFont {
  int size = 0;
  bool bold = false;
  PrintColor color = PrintColor::kBlack;
};

/// One line of text, as wide as the measure says.
struct PrintText {
  int x = 0;
  int y = 0;  ///< the upper edge
  int width = 0;
  int height = 0;
  PrintFont font = {};
  std::string text = {};
};

struct PrintLine {
  int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  bool strong = false;
};

struct PrintPage {
  std::vector<PrintText> texts;
  std::vector<PrintLine> lines;
};

/// The text size that a measure for printing measures; others go in proportion.
inline constexpr int kPrintSize = 180;
/// No text of the table is smaller.
inline constexpr int kSmallestPrintSize = 130;

/// The pages of a table. The table is as wide as the page: a wide one is made smaller, as far as it
/// stays readable, and columns that wrap become narrower; what still has no room is broken into
/// lines anywhere. No row is split between two pages: a cell with more lines than a page holds ends
/// with "…".
class PrintLayout {
 public:
  /// The table must outlive the layout; the measure gives the widths at `kPrintSize` and must
  /// outlive it too. A paper without room for heads, foot and one line is not supported.
  PrintLayout(const PrintTable& table, const Paper& paper, const viewkit::TextMeasure& measure);

  /// At least one: a table without rows has a page with its heads.
  [[nodiscard]] int Pages() const { return static_cast<int>(starts_.size()) - 1; }
  /// `page` counts from 0.
  [[nodiscard]] PrintPage Page(int page) const;
  /// What stands on the page, line by line: captions and cells of a row with blanks between, for
  /// users who hear it.
  [[nodiscard]] std::vector<std::string> SpokenPage(int page) const;
  /// The first row of a page; for `Pages()` the number of rows.
  [[nodiscard]] std::size_t FirstRow(int page) const {
    return starts_.at(static_cast<std::size_t>(page));
  }
  /// The size of the table's texts.
  [[nodiscard]] int Size() const { return size_; }
  /// Even at the least size the columns have less room than their texts want: a wider paper is
  /// better.
  [[nodiscard]] bool Crowded() const { return crowded_; }
  [[nodiscard]] const Paper& PaperUsed() const { return paper_; }

 private:
  friend class PrintPageMaker;

  void FitColumns();
  void TakeWidths(const std::vector<int>& wanted);
  [[nodiscard]] std::vector<int> NaturalWidths() const;
  void PlaceParts();
  void CountLines();
  void BreakPages();
  [[nodiscard]] std::size_t EndOfPage(std::size_t start) const;
  /// The row and the one before it stay together.
  [[nodiscard]] bool Bound(std::size_t row) const;

  [[nodiscard]] int Width(std::string_view text, bool bold, int size) const;
  [[nodiscard]] int LineHeight(int size) const;
  [[nodiscard]] int RowHeight(int lines) const;
  [[nodiscard]] int Padding() const { return size_ / 3; }
  [[nodiscard]] int Indent(const PrintRow& row, std::size_t col) const;
  /// The lines of a cell, of which there are never more than a page holds.
  [[nodiscard]] std::vector<std::string> CellLines(const std::string& text, int width,
                                                   bool bold) const;

  const PrintTable& table_;
  Paper paper_;
  const viewkit::TextMeasure& measure_;
  int size_ = kPrintSize;
  bool crowded_ = false;
  std::vector<int> widths_;
  bool stacked_ = false;  // the texts below the title have a line each
  int captions_top_ = 0;
  int caption_lines_ = 1;
  int body_top_ = 0;
  int body_bottom_ = 0;
  int most_lines_ = 3;               // of a cell: what captions may have, then what a page holds
  std::vector<int> row_lines_;       // lines of text that each row takes
  std::vector<std::size_t> starts_;  // first rows of the pages, and the number of rows
};

}  // namespace desk::views
