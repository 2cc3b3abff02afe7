#pragma once

#include <string>
#include <vector>

#include "viewkit/control.h"
#include "viewkit/indexing.h"

/// Controls that no view of this library has. They have no window; the status walk knows them,
/// because it keeps what any view of the host holds.
namespace tavrix::viewkit {

/// A box that stands for one value and shows a text for it, such as an identifier and the name that
/// goes with it (`vxTxt_S`).
class vxTxt_S : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "vxTxt_S"; }

  [[nodiscard]] const std::string& Value() const { return value_; }
  /// A new value shows as itself until it gets a text of its own.
  void SetValue(std::string value);
  [[nodiscard]] const std::string& Text() const { return text_; }
  void SetText(std::string text);

  Event<> Changed;  ///< the value or the text, whoever changed it

 private:
  std::string value_;
  std::string text_;
};

/// The application family's plain grid (`vxGrid`), as far as its columns go. Widths are twips.
class vxGrid : public Control {
 public:
  static constexpr int kDefaultColWidth = 960;

  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "vxGrid"; }

  [[nodiscard]] int Cols() const { return CountOf(widths_); }
  /// New columns have the default width; a negative number counts as 0.
  void SetCols(int cols);
  /// These throw `std::out_of_range` when there is no such column.
  [[nodiscard]] int ColWidth(int col) const;
  /// A negative width gives the default one.
  void SetColWidth(int col, int width);

 private:
  std::vector<int> widths_;
};

}  // namespace tavrix::viewkit
