#include "views/print_page.h"

#include <algorithm>
#include <array>
#include <utility>

#include "views/print_wrap.h"

namespace desk::views {

namespace {

std::string NumberText(int page, int pages) {
  return "第 " + std::to_string(page + 1) + " 页 共 " + std::to_string(pages) + " 页";
}

PrintColor ColorOf(const PrintColumn& column, const std::string& text) {
  return column.amount && text.starts_with("-") ? PrintColor::kRed : PrintColor::kBlack;
}

}  // namespace

std::vector<std::string> PrintPageMaker::Spoken(int page) const {
  std::vector<std::string> lines;
  const auto add = [&lines](const auto& parts, const auto& text_of) {
    std::string line;
    for (const auto& part : parts) {
      const std::string& text = text_of(part);
      if (!text.empty()) line += (line.empty() ? "" : " ") + text;
    }
    if (!line.empty()) lines.push_back(std::move(line));
  };
  const auto itself = [](const std::string& text) -> const std::string& { return text; };
  add(std::array{table_.title}, itself);
  add(std::array{table_.left, table_.middle, table_.right}, itself);
  add(table_.columns,
      [](const PrintColumn& column) -> const std::string& { return column.caption; });
  for (std::size_t row = layout_.FirstRow(page); row < layout_.FirstRow(page + 1); ++row) {
    add(table_.rows[row].cells, itself);
  }
  add(std::array{table_.foot, NumberText(page, layout_.Pages())}, itself);
  return lines;
}

PrintPage PrintPageMaker::Make(int page) {
  const std::size_t first = layout_.FirstRow(page);
  const std::size_t end = layout_.FirstRow(page + 1);
  Heading();
  Captions();
  std::vector<int> edges = {layout_.captions_top_, layout_.body_top_};
  for (std::size_t row = first; row < end; ++row) {
    Row(row, row == first, edges.back());
    edges.push_back(edges.back() + layout_.RowHeight(layout_.row_lines_[row]));
  }
  Rules(edges);
  Foot(page);
  return std::move(page_);
}

void PrintPageMaker::Put(const std::string& text, Room room, int y, PrintFont font,
                         PrintAlign align) {
  if (text.empty()) return;
  const WidthOf width_of = [&](std::string_view part) {
    return layout_.Width(part, font.bold, font.size);
  };
  std::string shown = CutText(text, room.width, width_of);
  const int width = width_of(shown);
  const int spare = std::max(0, room.width - width);
  const int before = align == PrintAlign::kLeft     ? 0
                     : align == PrintAlign::kCenter ? spare / 2
                                                    : spare;
  page_.texts.push_back({.x = room.left + before,
                         .y = y,
                         .width = width,
                         .height = layout_.LineHeight(font.size),
                         .font = font,
                         .text = std::move(shown)});
}

void PrintPageMaker::Heading() {
  const Paper& paper = layout_.paper_;
  const Room room{paper.left, paper.InnerWidth()};
  Put(table_.title, room, paper.top, {.size = kTitleSize, .bold = true}, PrintAlign::kCenter);
  const int line = layout_.LineHeight(kPrintSize);
  int y = paper.top + layout_.LineHeight(kTitleSize) + kPrintSize / 2;
  const PrintFont font{.size = kPrintSize};
  const int step = layout_.stacked_ ? line : 0;
  Put(table_.left, room, y, font, PrintAlign::kLeft);
  Put(table_.middle, room, y += step, font,
      layout_.stacked_ ? PrintAlign::kLeft : PrintAlign::kCenter);
  Put(table_.right, room, y + step, font,
      layout_.stacked_ ? PrintAlign::kLeft : PrintAlign::kRight);
}

void PrintPageMaker::Foot(int page) {
  const Paper& paper = layout_.paper_;
  const int y = paper.height - paper.bottom - layout_.LineHeight(kPrintSize);
  const PrintFont font{.size = kPrintSize};
  const std::string number = NumberText(page, layout_.Pages());
  const int taken = layout_.Width(number, false, kPrintSize) + kPrintSize;
  Put(number, {paper.left, paper.InnerWidth()}, y, font, PrintAlign::kRight);
  Put(table_.foot, {paper.left, std::max(0, paper.InnerWidth() - taken)}, y, font,
      PrintAlign::kLeft);
}

void PrintPageMaker::Cell(const std::vector<std::string>& lines, std::size_t col, int y, int height,
                          int indent, PrintFont font, PrintAlign align) {
  int left = layout_.paper_.left + layout_.Padding() + indent;
  for (std::size_t i = 0; i < col; ++i) left += layout_.widths_[i];
  const Room room{left, std::max(0, layout_.widths_[col] - 2 * layout_.Padding() - indent)};
  const int line = layout_.LineHeight(font.size);
  int top = y + (height - line * static_cast<int>(lines.size())) / 2;
  for (const std::string& text : lines) {
    Put(text, room, top, font, align);
    top += line;
  }
}

void PrintPageMaker::Captions() {
  const int height = layout_.RowHeight(layout_.caption_lines_);
  for (std::size_t col = 0; col < table_.columns.size(); ++col) {
    const int width = layout_.widths_[col] - 2 * layout_.Padding();
    Cell(layout_.CellLines(table_.columns[col].caption, width, true), col, layout_.captions_top_,
         height, 0, {.size = layout_.size_, .bold = true}, PrintAlign::kCenter);
  }
}

bool PrintPageMaker::RepeatsAbove(std::size_t row, std::size_t col) const {
  if (!table_.columns[col].merged) return false;
  const PrintRow& here = table_.rows[row];
  const PrintRow& above = table_.rows[row - 1];
  return here.bold == above.bold && here.cells[col] == above.cells[col];
}

void PrintPageMaker::Row(std::size_t row, bool first, int y) {
  const PrintRow& here = table_.rows[row];
  const int height = layout_.RowHeight(layout_.row_lines_[row]);
  for (std::size_t col = 0; col < table_.columns.size(); ++col) {
    if (!first && RepeatsAbove(row, col)) continue;
    const int indent = layout_.Indent(here, col);
    const int width = layout_.widths_[col] - 2 * layout_.Padding() - indent;
    const PrintColumn& column = table_.columns[col];
    Cell(layout_.CellLines(here.cells[col], width, here.bold), col, y, height, indent,
         {.size = layout_.size_, .bold = here.bold, .color = ColorOf(column, here.cells[col])},
         column.align);
  }
}

/// Strong around the table and below the captions.
void PrintPageMaker::Rules(const std::vector<int>& edges) {
  const int left = layout_.paper_.left;
  const int right = left + layout_.paper_.InnerWidth();
  for (std::size_t i = 0; i < edges.size(); ++i) {
    page_.lines.push_back({left, edges[i], right, edges[i], i < 2 || i + 1 == edges.size()});
  }
  int x = left;
  page_.lines.push_back({x, edges.front(), x, edges.back(), true});
  for (const int width : layout_.widths_) {
    x += width;
    page_.lines.push_back({x, edges.front(), x, edges.back(), x == right});
  }
}

}  // namespace desk::views
