#pragma once

#include <deque>
#include <span>
#include <string>

#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/form_rows.h"
#include "viewkit/controls/label.h"
#include "viewkit/grid/flex_grid.h"

namespace desk::views {

namespace host = tavrix::host;
namespace viewkit = tavrix::viewkit;

/// A column of a list of texts.
struct TextColumn {
  const char* heading;
  int width;  ///< twips
  viewkit::Alignment alignment = viewkit::Alignment::kLeftCenter;
};

/// One row of headings and these columns; one whole row is selected.
void MakeTextList(viewkit::FlexGrid& list, std::span<const TextColumn> columns,
                  const char* accessible_name);

/// A dialog of labels, boxes and lists above the buttons that carry it out and give it up.
class FormDialog : public viewkit::DialogModel {
 public:
  /// The list gives way; what stands below it moves up.
  void FitInto(int height) override;

 protected:
  explicit FormDialog(const char* name);

  /// Makes it the dialog's next control.
  void Put(viewkit::Control& control, const host::Bounds& bounds);
  /// A label of the dialog's own.
  viewkit::Label& PutLabel(const std::string& caption, const host::Bounds& bounds);
  /// The list that gives way on a low screen, down to a height of `least` twips.
  void PutList(viewkit::FlexGrid& list, const host::Bounds& bounds, int least = 1500);
  /// The two buttons, the last controls of a dialog of this width; `caption` is that of the default
  /// one, which calls `Accept`.
  void PutButtons(const std::string& caption, int width, int top);
  [[nodiscard]] viewkit::CommandButton& AcceptButton() { return ok_; }
  /// Carries out what the dialog is for.
  virtual void Accept() = 0;

 private:
  std::deque<viewkit::Label> labels_;
  viewkit::FlexGrid* list_ = nullptr;
  int least_height_ = 0;  // of that list
  viewkit::CommandButton ok_{"Cmd", 0};
  viewkit::CommandButton cancel_{"Cmd", 1};
};

}  // namespace desk::views
