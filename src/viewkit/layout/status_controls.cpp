#include "viewkit/layout/status_controls.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace tavrix::viewkit {

void vxTxt_S::SetValue(std::string value) {
  if (value_ == value) return;
  value_ = std::move(value);
  text_ = value_;
  Notify({Change::Kind::kContent});
  Changed.Raise();
}

void vxTxt_S::SetText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  Notify({Change::Kind::kContent});
  Changed.Raise();
}

void vxGrid::SetCols(int cols) {
  widths_.resize(SizeOf(std::max(cols, 0)), kDefaultColWidth);
  Notify({Change::Kind::kContent});
}

int vxGrid::ColWidth(int col) const {
  if (col < 0 || col >= Cols()) throw std::out_of_range("no such column in the grid");
  return ItemAt(widths_, col);
}

void vxGrid::SetColWidth(int col, int width) {
  if (width < 0) width = kDefaultColWidth;
  if (ColWidth(col) == width) return;
  ItemAt(widths_, col) = width;
  Notify({Change::Kind::kColumns});
}

}  // namespace tavrix::viewkit
