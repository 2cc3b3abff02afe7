#pragma once

#include <windows.h>

#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "viewkit/win32/handles.h"
#include "views/print_layout.h"

namespace desk::app {

/// The measure of texts on paper, at `views::kPrintSize`. It does not depend on a device: what is
/// painted takes its widths from here, so that a page is the same on every printer and on screen.
class PageMeasure : public tavrix::viewkit::TextMeasure {
 public:
  PageMeasure();
  [[nodiscard]] int Width(std::string_view text, bool bold) const override;
  [[nodiscard]] int LineHeight() const override { return line_height_; }
  /// How far each unit of `text` takes the next one, in twips.
  [[nodiscard]] std::vector<int> Steps(std::wstring_view text, int size, bool bold) const;

 private:
  /// Of one character, in parts of `kUnits` of a twip.
  [[nodiscard]] int Advance(std::wstring_view character, bool bold) const;
  [[nodiscard]] std::vector<int> Advances(std::wstring_view text, bool bold) const;

  tavrix::viewkit::win32::MemoryDc dc_;
  tavrix::viewkit::win32::Font fonts_[2];
  int line_height_ = 0;
  mutable std::vector<int> advances_[2];  // of single units; -1: not measured yet
};

/// Paints pages on a printer or on screen.
class PagePainter {
 public:
  explicit PagePainter(const PageMeasure& measure) : measure_(measure) {}

  /// The upper left corner of the paper comes to `origin` of `dc`, in its pixels; so many of them
  /// are an inch.
  void Paint(HDC dc, POINT origin, SIZE per_inch, const views::PrintPage& page);

 private:
  void PaintText(HDC dc, const views::PrintText& text);
  [[nodiscard]] HFONT FontOf(int size, bool bold);

  const PageMeasure& measure_;
  std::map<std::pair<int, bool>, tavrix::viewkit::win32::Font> fonts_;
};

}  // namespace desk::app
