#pragma once

#include <memory>
#include <string>
#include <vector>

#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/frame_box.h"
#include "viewkit/controls/text_box.h"
#include "views/column_layout.h"
#include "views/form_dialog.h"
#include "views/layout_property.h"

namespace desk::views {

/// The dialog in which a user sets the columns of a grid: a list of them, and boxes for the chosen
/// one. Space or a double click in the list shows and hides a column.
class LayoutDialog : public FormDialog {
 public:
  enum class Outcome { kCancelled, kAccepted, kDefaults };
  struct Plan {
    std::string subject = {};  ///< whose columns, for the caption
    LayoutScope scope = LayoutScope::kEverything;
    bool has_defaults = false;    ///< there is a layout to go back to
    std::string for_others = {};  ///< caption of the box to set other grids alike; empty for none
  };
  LayoutDialog(Plan plan, LayoutChoice choice, viewkit::UserPort& user);

  [[nodiscard]] Outcome Result() const { return outcome_; }
  [[nodiscard]] const LayoutChoice& Choice() const { return choice_; }
  [[nodiscard]] bool ForOthers() const { return others_.Value() == viewkit::CheckBox::kChecked; }

 private:
  /// One of the properties that can be set, with its box and the label beside it.
  struct Setting {
    const ColumnProperty* property;
    std::unique_ptr<PropertyBox> box = nullptr;
    std::unique_ptr<viewkit::Label> label = nullptr;  ///< null where the box has the caption
  };

  void MakeSettings();
  [[nodiscard]] Setting& SettingOf(WidthProperty property);
  void PutSetting(Setting& setting, const viewkit::form::Rows& rows, int row);
  void PlaceEverything();
  void PlaceGrid(int top);
  void PlaceWidths();
  int PlaceList(int width, int height);
  void PlaceButtons(int width, int top);
  void FillGridBoxes();
  void Listen();
  void ShowRows();
  void ShowRow(std::size_t position);
  /// Fills the boxes from the chosen column.
  void ShowColumn();
  /// Takes the boxes' contents over into the chosen column.
  void TakeColumn();
  /// Boxes that mean nothing for the column's type are grey.
  void EnableBoxes(const ColumnChoice& column);
  /// Takes the boxes' contents over into what counts for the whole grid.
  void TakeGrid();
  void Toggle();
  void Accept() override;
  [[nodiscard]] ColumnChoice* Chosen();

  Plan plan_;
  LayoutChoice before_;
  LayoutChoice choice_;
  viewkit::UserPort& user_;
  Outcome outcome_ = Outcome::kCancelled;
  bool showing_ = false;  // the boxes are being filled: no edit of the user

  viewkit::FlexGrid list_{"Vs"};
  viewkit::FrameBox frame_{"Frame", 0};
  std::vector<Setting> settings_;  // in the order of the Tab key
  viewkit::FrameBox grid_frame_{"Frame", 1};
  viewkit::ComboBox frozen_{viewkit::ComboBox::Style::kList, "Combo", 5};
  viewkit::TextBox header_height_{"Txt", 1};
  viewkit::TextBox row_height_{"Txt", 2};
  viewkit::CheckBox clear_totals_{"Chk", 5};
  viewkit::CheckBox others_{"Chk", 4};
  viewkit::CommandButton defaults_{"Cmd", 2};
};

}  // namespace desk::views
