#pragma once

#include <string>
#include <unordered_map>

#include "viewkit/ports.h"
#include "viewkit/win32/handles.h"
#include "viewkit/win32/scale.h"
#include "viewkit/win32/view_window.h"

namespace tavrix::viewkit::win32 {

/// A view's font at one resolution, regular and bold, and the measure of texts in it.
class FontSet : public TextMeasure {
 public:
  FontSet(const FontSpec& wanted, Scale scale);

  [[nodiscard]] HFONT Get(bool bold) const { return bold ? bold_.get() : regular_.get(); }
  [[nodiscard]] int Width(std::string_view text, bool bold) const override;
  [[nodiscard]] int LineHeight() const override { return scale_.ToTwips(line_height_); }
  [[nodiscard]] int LinePixels() const { return line_height_; }
  /// Width of one line in pixels; not remembered.
  [[nodiscard]] int Pixels(std::wstring_view text, bool bold) const;

 private:
  Scale scale_;
  MemoryDc dc_;
  Font regular_;
  Font bold_;
  int line_height_ = 0;
  // Few texts are measured, but these again and again: the widest of each column.
  mutable std::unordered_map<std::string, int> widths_[2];
};

}  // namespace tavrix::viewkit::win32
