#include "views/form_dialog.h"

#include <algorithm>

namespace desk::views {

using host::Bounds;

void MakeTextList(viewkit::FlexGrid& list, std::span<const TextColumn> columns,
                  const char* accessible_name) {
  list.SetFixedRows(1);
  list.SetFixedCols(0);
  list.SetCols(static_cast<int>(columns.size()));
  int col = 0;
  for (const TextColumn& column : columns) {
    list.SetTextMatrix(0, col, column.heading);
    list.SetColWidth(col, column.width);
    list.SetColDataType(col, viewkit::ColumnType::kString);
    list.SetColAlignment(col, column.alignment);
    list.SetFixedAlignment(col, viewkit::Alignment::kCenterCenter);
    ++col;
  }
  list.SetSelectionMode(viewkit::SelectionMode::kByRow);
  list.SetAllowSelection(false);
  list.SetAccessibleName(accessible_name);
}

FormDialog::FormDialog(const char* name) : DialogModel(name) {
  ok_.Clicked.Add([this] { Accept(); });
  cancel_.Clicked.Add([this] { Close(); });
}

void FormDialog::Put(viewkit::Control& control, const Bounds& bounds) {
  control.SetBounds(bounds);
  Add(control);
}

viewkit::Label& FormDialog::PutLabel(const std::string& caption, const Bounds& bounds) {
  auto& label = labels_.emplace_back("Label", static_cast<int>(labels_.size()));
  label.SetCaption(caption);
  Put(label, bounds);
  return label;
}

void FormDialog::PutList(viewkit::FlexGrid& list, const Bounds& bounds, int least) {
  Put(list, bounds);
  list_ = &list;
  least_height_ = least;
}

void FormDialog::PutButtons(const std::string& caption, int width, int top) {
  ok_.SetCaption(caption);
  Put(ok_, viewkit::form::Button(width, 1, top));
  cancel_.SetCaption("取消");
  Put(cancel_, viewkit::form::Button(width, 0, top));
  SetButtons(ok_, cancel_);
  SetSize(width, top + viewkit::form::kButtonHeight + viewkit::form::kMargin);
}

void FormDialog::FitInto(int height) {
  if (list_ == nullptr) return;
  const Bounds list = list_->GetBounds();
  const int over = std::min(Height() - height, list.height - least_height_);
  if (over <= 0) return;
  for (std::size_t i = 0; i < Controls().Count(); ++i) {
    viewkit::Control& control = Controls().At(i);
    Bounds bounds = control.GetBounds();
    if (bounds.top < list.top + list.height) continue;
    bounds.top -= over;
    control.SetBounds(bounds);
  }
  list_->SetBounds({list.left, list.top, list.width, list.height - over});
  SetSize(Width(), Height() - over);
}

}  // namespace desk::views
