#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// The application family's plain grid (`vxGrid`), as far as its columns go. Widths are twips.
class vxGrid : public Control {
 public:
  static constexpr int kDefaultColWidth = 960;

  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "vxGrid"; }

  [[nodiscard]] int Cols() const { return static_cast<int>(widths_.size()); }
  /// New columns have the default width; a negative number counts as 0.
  void SetCols(int cols) {
    widths_.resize(static_cast<std::size_t>(cols < 0 ? 0 : cols), kDefaultColWidth);
    Notify({Change::Kind::kContent});
  }
  /// These throw `std::out_of_range` when there is no such column.
  [[nodiscard]] int ColWidth(int col) const { return widths_.at(static_cast<std::size_t>(col)); }
  /// A negative width gives the default one.
  void SetColWidth(int col, int width) {
    int& own = widths_.at(static_cast<std::size_t>(col));
    if (width < 0) width = kDefaultColWidth;
    if (own == width) return;
    own = width;
    Notify({Change::Kind::kColumns});
  }

 private:
  std::vector<int> widths_;
};

}  // namespace tavrix::viewkit
