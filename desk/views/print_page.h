#pragma once

#include <vector>

#include "views/print_layout.h"

namespace desk::views {

inline constexpr int kTitleSize = 280;

/// Draws one page of a layout.
class PrintPageMaker {
 public:
  explicit PrintPageMaker(const PrintLayout& layout) : layout_(layout), table_(layout.table_) {}

  [[nodiscard]] PrintPage Make(int page);
  [[nodiscard]] std::vector<std::string> Spoken(int page) const;

 private:
  struct Room {
    int left = 0;
    int width = 0;
  };
  void Heading();
  void Foot(int page);
  void Captions();
  void Row(std::size_t row, bool first, int y);
  void Rules(const std::vector<int>& edges);
  /// The texts of one cell, in the middle of its height.
  void Cell(const std::vector<std::string>& lines, std::size_t col, int y, int height, int indent,
            PrintFont font, PrintAlign align);
  void Put(const std::string& text, Room room, int y, PrintFont font, PrintAlign align);
  [[nodiscard]] bool RepeatsAbove(std::size_t row, std::size_t col) const;

  const PrintLayout& layout_;
  const PrintTable& table_;
  PrintPage page_;
};

}  // namespace desk::views
