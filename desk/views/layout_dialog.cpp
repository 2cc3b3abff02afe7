#include "views/layout_dialog.h"

#include <algorithm>
#include <utility>

#include "host/row_set.h"
#include "host/text.h"
#include "viewkit/controls/form_rows.h"

namespace desk::views {

using viewkit::CheckBox;
using viewkit::kTwipsPerPixel;
using viewkit::form::kGap;
using viewkit::form::kMargin;

namespace {

constexpr int kMaxHeight = 500;  // pixels

void Check(CheckBox& box, bool set) {
  box.SetValue(set ? CheckBox::kChecked : CheckBox::kUnchecked);
}

bool IsSet(const CheckBox& box) {
  return box.Value() == CheckBox::kChecked;
}

/// A height may be left to the grid.
std::string HeightText(int twips) {
  const int pixels = ToPixels(twips);
  return pixels == 0 ? std::string() : std::to_string(pixels);
}
/// What stands in the file is good as long as nobody touches it, whatever it is.
bool HeightIsGood(const viewkit::TextBox& box, int twips) {
  return box.Text() == HeightText(twips) || host::Trimmed(box.Text()).empty() ||
         TypedPixels(box.Text(), kMaxHeight) != 0;
}
/// What the box shows is rounded: only another number is another height.
void TakeHeight(const viewkit::TextBox& box, int& twips) {
  const bool another = box.Text() != HeightText(twips);
  if (another && HeightIsGood(box, twips)) {
    twips = TypedPixels(box.Text(), kMaxHeight) * kTwipsPerPixel;
  }
}

}  // namespace

LayoutDialog::LayoutDialog(Plan plan, LayoutChoice choice, viewkit::UserPort& user)
    : FormDialog("DeskLayout"),
      plan_(std::move(plan)),
      before_(choice),
      choice_(std::move(choice)),
      user_(user) {
  SetCaption("列布局 - " + plan_.subject);
  MakeSettings();
  FillGridBoxes();
  if (plan_.scope == LayoutScope::kEverything) {
    PlaceEverything();
  } else {
    PlaceWidths();
  }
  ShowRows();
  Listen();
  list_.SetRow(list_.FixedRows());
}

int LayoutDialog::PlaceList(int width, int height) {
  const bool everything = plan_.scope == LayoutScope::kEverything;
  const auto properties =
      everything ? ColumnProperties() : ColumnProperties().first(kWidthProperties);
  std::vector<TextColumn> columns;
  for (const ColumnProperty& property : properties) {
    columns.push_back({property.heading, property.width, property.alignment});
  }
  MakeTextList(list_, columns, "列");
  if (!everything) list_.SetColWidth(kTitleProperty, 2850);
  PutList(list_, {kMargin, kMargin, width - 2 * kMargin, height});
  return kMargin + height + kGap;
}

void LayoutDialog::MakeSettings() {
  const auto properties = ColumnProperties();
  const bool everything = plan_.scope == LayoutScope::kEverything;
  for (const ColumnProperty& property :
       properties.first(everything ? properties.size() : std::size_t{kWidthProperties})) {
    if (property.make_box == nullptr) continue;
    Setting setting{.property = &property, .box = property.make_box(property.caption)};
    if (property.label >= 0) {
      setting.label = std::make_unique<viewkit::Label>("Lbl", property.label);
      setting.label->SetCaption(property.caption);
    }
    settings_.push_back(std::move(setting));
  }
  std::ranges::sort(settings_, {}, [](const Setting& setting) {
    return std::pair(setting.property->third, setting.property->row);
  });
}

LayoutDialog::Setting& LayoutDialog::SettingOf(WidthProperty property) {
  return *std::ranges::find(settings_, &ColumnProperties()[property], &Setting::property);
}

void LayoutDialog::FillGridBoxes() {
  frozen_.AddItem("不冻结");
  // A grid counts its hidden columns too.
  const int last = choice_.columns.empty() ? 0 : choice_.columns.back().col;
  for (int count = 1; count <= last; ++count) {
    frozen_.AddItem("前 " + std::to_string(count) + " 列");
  }
  frozen_.SetListIndex(std::min(choice_.frozen, last));
  header_height_.SetText(HeightText(choice_.header_height));
  row_height_.SetText(HeightText(choice_.row_height));
  Check(clear_totals_, choice_.clear_totals);
}

void LayoutDialog::Listen() {
  const auto take = [this] { TakeColumn(); };
  list_.RowColChange.Add([this] { ShowColumn(); });
  list_.DoubleClick.Add([this] { Toggle(); });
  list_.KeyDown.Add([this](viewkit::Key key, viewkit::Modifiers modifiers) {
    if (key == viewkit::Key::kSpace && !modifiers.control && !modifiers.alt) Toggle();
  });
  for (const Setting& setting : settings_) setting.box->OnChange(take);
  const auto take_grid = [this] { TakeGrid(); };
  frozen_.Changed.Add(take_grid);
  for (viewkit::TextBox* box : {&header_height_, &row_height_}) box->Changed.Add(take_grid);
  clear_totals_.Clicked.Add(take_grid);
  defaults_.Clicked.Add([this] {
    outcome_ = Outcome::kDefaults;
    Close();
  });
}

void LayoutDialog::ShowRows() {
  host::RowSet rows(static_cast<std::size_t>(list_.Cols()));
  for (const ColumnChoice& column : choice_.columns) {
    for (const ColumnProperty& property :
         ColumnProperties().first(static_cast<std::size_t>(list_.Cols()))) {
      rows.AppendText(property.text(column));
    }
  }
  list_.LoadRows(std::move(rows));
}

void LayoutDialog::ShowRow(std::size_t position) {
  const int row = list_.FixedRows() + static_cast<int>(position);
  for (int cell = 0; cell < list_.Cols(); ++cell) {
    const ColumnProperty& property = ColumnProperties()[static_cast<std::size_t>(cell)];
    list_.SetTextMatrix(row, cell, property.text(choice_.columns[position]));
  }
}

ColumnChoice* LayoutDialog::Chosen() {
  const int position = list_.Row() - list_.FixedRows();
  if (position < 0 || position >= static_cast<int>(choice_.columns.size())) return nullptr;
  return &choice_.columns[static_cast<std::size_t>(position)];
}

void LayoutDialog::ShowColumn() {
  const ColumnChoice* column = Chosen();
  if (column == nullptr) return;
  showing_ = true;
  frame_.SetCaption("所选列：" + column->title);
  for (const Setting& setting : settings_) setting.box->Show(*column);
  EnableBoxes(*column);
  showing_ = false;
}

void LayoutDialog::EnableBoxes(const ColumnChoice& column) {
  for (const Setting& setting : settings_) {
    const auto usable = setting.property->usable;
    if (usable != nullptr) setting.box->Control().SetEnabled(usable(column));
  }
}

void LayoutDialog::TakeGrid() {
  const int shown = std::min(choice_.frozen, frozen_.ListCount() - 1);
  const int frozen = frozen_.ListIndex();
  if (frozen >= 0 && frozen != shown) choice_.frozen = frozen;
  TakeHeight(header_height_, choice_.header_height);
  TakeHeight(row_height_, choice_.row_height);
  choice_.clear_totals = IsSet(clear_totals_);
}

void LayoutDialog::TakeColumn() {
  ColumnChoice* column = Chosen();
  if (showing_ || column == nullptr) return;
  for (const Setting& setting : settings_) setting.box->Take(*column);
  EnableBoxes(*column);
  ShowRow(static_cast<std::size_t>(column - choice_.columns.data()));
}

void LayoutDialog::Toggle() {
  if (Chosen() != nullptr) SettingOf(kShownProperty).box->Click();
}

void LayoutDialog::Accept() {
  const auto refuse = [this](const char* text, viewkit::Control& control) {
    static_cast<void>(user_.Ask(text, "提示：", viewkit::UserPort::Icon::kWarning,
                                viewkit::UserPort::Buttons::kOk));
    control.SetFocus();
  };
  const ColumnChoice* column = Chosen();
  PropertyBox& width = *SettingOf(kWidthProperty).box;
  if (column != nullptr && !width.IsGood(*column)) {
    return refuse("列宽应当是 1 到 2000 的整数！", width.Control());
  }
  for (const auto& [box, twips] : {std::pair{&header_height_, choice_.header_height},
                                   std::pair{&row_height_, choice_.row_height}}) {
    if (!HeightIsGood(*box, twips)) return refuse("行高应当是 1 到 500 的整数，或者不填！", *box);
  }
  const auto shows_any = [](const LayoutChoice& choice) {
    return std::ranges::any_of(choice.columns, &ColumnChoice::shown);
  };
  if (shows_any(before_) && !shows_any(choice_)) {
    return refuse("至少要显示一列！", SettingOf(kShownProperty).box->Control());
  }
  outcome_ = Outcome::kAccepted;
  Close();
}

}  // namespace desk::views
