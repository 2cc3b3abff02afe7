#include "views/layout_dialog.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "host/row_set.h"
#include "host/text.h"
#include "viewkit/controls/form_rows.h"

namespace desk::views {

using viewkit::Alignment;
using viewkit::CheckBox;
using viewkit::ColumnType;
using viewkit::kTwipsPerPixel;
using viewkit::SortOrder;
using viewkit::form::kGap;
using viewkit::form::kMargin;

namespace {

constexpr int kMostWidth = 2000;  // pixels
constexpr int kMostHeight = 500;

/// Columns of the list.
enum ListColumn {
  kTitle,
  kShown,
  kWidth,
  kType,
  kFormat,
  kDecimals,
  kKind,
  kAlignment,
  kSort,
  kMerge,
  kGroup,
  kTotal,
  kListColumns
};
struct ListColumnPlan {
  const char* heading;
  int width;
  Alignment alignment;
};
constexpr std::array<ListColumnPlan, kListColumns> kPlans = {
    {{"列", 1300, Alignment::kLeftCenter},
     {"显示", 525, Alignment::kCenterCenter},
     {"宽度", 600, Alignment::kRightCenter},
     {"数据类型", 900, Alignment::kLeftCenter},
     {"格式", 900, Alignment::kLeftCenter},
     {"小数位", 690, Alignment::kLeftCenter},
     {"取位依据", 900, Alignment::kLeftCenter},
     {"对齐", 525, Alignment::kLeftCenter},
     {"排序", 945, Alignment::kLeftCenter},
     {"合并", 525, Alignment::kCenterCenter},
     {"小计", 525, Alignment::kCenterCenter},
     {"合计", 525, Alignment::kCenterCenter}}};

/// By the numbers of the file.
constexpr std::array<const char*, 9> kKinds = {
    "无", "数量", "重量", "单价", "外币金额", "原币金额", "外币税额", "原币税额", "汇率"};
constexpr std::array<const char*, 9> kSorts = {"不排序",   "升序",           "降序",
                                               "数值升序", "数值降序",       "文字升序",
                                               "文字降序", "区分大小写升序", "区分大小写降序"};

struct TypeName {
  const char* name;
  ColumnType type;
};
constexpr std::array<TypeName, 7> kTypes = {{{"自动", ColumnType::kEmpty},
                                             {"文字", ColumnType::kString},
                                             {"数值", ColumnType::kDouble},
                                             {"整数", ColumnType::kLong},
                                             {"货币", ColumnType::kCurrency},
                                             {"日期", ColumnType::kDate},
                                             {"逻辑", ColumnType::kBoolean}}};

/// The place in `kTypes`; -1 for a type that only a file names.
int PlaceOf(ColumnType type) {
  const auto found = std::ranges::find(kTypes, type, &TypeName::type);
  return found == kTypes.end() ? -1 : static_cast<int>(found - kTypes.begin());
}

std::string NameOf(ColumnType type) {
  const int place = PlaceOf(type);
  if (place < 0) return std::to_string(static_cast<int>(type));
  return kTypes.at(static_cast<std::size_t>(place)).name;
}

/// Only these formats take their decimal places from elsewhere.
bool TakesDecimals(ColumnType type) {
  return type == ColumnType::kEmpty || type == ColumnType::kDouble;
}

struct AlignmentName {
  const char* name;
  Alignment alignment;
};
constexpr std::array<AlignmentName, 4> kAlignments = {{{"自动", Alignment::kGeneral},
                                                       {"左", Alignment::kLeftCenter},
                                                       {"居中", Alignment::kCenterCenter},
                                                       {"右", Alignment::kRightCenter}}};

/// The place in `kAlignments`; top, middle and bottom are one there.
int PlaceOf(Alignment alignment) {
  const int number = static_cast<int>(alignment);
  constexpr int kHeights = 3;
  return alignment == Alignment::kGeneral ? 0 : number / kHeights + 1;
}

int ToPixels(int twips) {
  return (twips + kTwipsPerPixel / 2) / kTwipsPerPixel;
}

const char* Mark(bool set) {
  return set ? "√" : "";
}

std::string CellOf(const ColumnChoice& column, ListColumn cell) {
  switch (cell) {
    case kTitle:
      return column.title;
    case kShown:
      return Mark(column.shown);
    case kWidth:
      return std::to_string(ToPixels(column.width));
    case kType:
      return NameOf(column.type);
    case kFormat:
      return column.format;
    case kDecimals:
      return column.decimals;
    case kKind:
      return column.value_kind == 0 ? "" : kKinds.at(static_cast<std::size_t>(column.value_kind));
    case kAlignment:
      return kAlignments.at(static_cast<std::size_t>(PlaceOf(column.alignment))).name;
    case kSort:
      return column.sort == SortOrder::kNone ? ""
                                             : kSorts.at(static_cast<std::size_t>(column.sort));
    case kMerge:
      return Mark(column.merge);
    case kGroup:
      return Mark(column.group);
    case kTotal:
      return Mark(column.total);
    default:
      return {};
  }
}

void Check(CheckBox& box, bool set) {
  box.SetValue(set ? CheckBox::kChecked : CheckBox::kUnchecked);
}

bool IsSet(const CheckBox& box) {
  return box.Value() == CheckBox::kChecked;
}

/// Pixels that a user has typed; 0 when it is no number from 1 to `most`.
int TypedPixels(const std::string& typed, int most) {
  const std::string_view text = host::Trimmed(typed);
  constexpr std::size_t kMostDigits = 4;
  const bool digits = !text.empty() && text.size() <= kMostDigits &&
                      text.find_first_not_of("0123456789") == std::string_view::npos;
  const int pixels = digits ? static_cast<int>(host::LeadingNumber(text)) : 0;
  return pixels <= most ? pixels : 0;
}

/// A height may be left to the grid.
std::string HeightText(int twips) {
  const int pixels = ToPixels(twips);
  return pixels == 0 ? std::string() : std::to_string(pixels);
}
/// What stands in the file is good as long as nobody touches it, whatever it is.
bool HeightIsGood(const viewkit::TextBox& box, int twips) {
  return box.Text() == HeightText(twips) || host::Trimmed(box.Text()).empty() ||
         TypedPixels(box.Text(), kMostHeight) != 0;
}
/// What the box shows is rounded: only another number is another height.
void TakeHeight(const viewkit::TextBox& box, int& twips) {
  const bool another = box.Text() != HeightText(twips);
  if (another && HeightIsGood(box, twips)) {
    twips = TypedPixels(box.Text(), kMostHeight) * kTwipsPerPixel;
  }
}

std::string WidthText(const ColumnChoice& column) {
  return std::to_string(ToPixels(column.width));
}
bool WidthIsGood(const viewkit::TextBox& box, const ColumnChoice& column) {
  return box.Text() == WidthText(column) || TypedPixels(box.Text(), kMostWidth) != 0;
}

/// The choice of a list that shows `shown`, when the user has made another one.
std::optional<int> TakenFrom(const viewkit::ComboBox& list, int shown) {
  const int place = list.ListIndex();
  return place < 0 || place == shown ? std::nullopt : std::optional(place);
}

/// Blanks that were there before are none of the user's.
void TakeText(const viewkit::ComboBox& box, std::string& text) {
  if (box.Text() != text) text = std::string(host::Trimmed(box.Text()));
}

}  // namespace

LayoutDialog::LayoutDialog(Plan plan, LayoutChoice choice, viewkit::UserPort& user)
    : DialogModel("DeskLayout"),
      plan_(std::move(plan)),
      before_(choice),
      choice_(std::move(choice)),
      user_(user) {
  SetCaption("列布局 - " + plan_.subject);
  FillLists();
  if (plan_.scope == LayoutScope::kEverything) {
    PlaceEverything();
  } else {
    PlaceWidths();
  }
  SetButtons(ok_, cancel_);
  ShowRows();
  Listen();
  list_.SetRow(list_.FixedRows());
}

int LayoutDialog::PlaceList(int width, int height) {
  list_.SetFixedRows(1);
  list_.SetFixedCols(0);
  const bool everything = plan_.scope == LayoutScope::kEverything;
  const int cells = everything ? static_cast<int>(kListColumns) : static_cast<int>(kWidth) + 1;
  list_.SetCols(cells);
  for (int cell = 0; cell < cells; ++cell) {
    const ListColumnPlan& plan = kPlans.at(static_cast<std::size_t>(cell));
    list_.SetTextMatrix(0, cell, plan.heading);
    list_.SetColWidth(cell, plan.width);
    list_.SetColDataType(cell, viewkit::ColumnType::kString);
    list_.SetColAlignment(cell, plan.alignment);
    list_.SetFixedAlignment(cell, Alignment::kCenterCenter);
  }
  if (!everything) list_.SetColWidth(kTitle, 2850);
  list_.SetSelectionMode(viewkit::SelectionMode::kByRow);
  list_.SetAllowSelection(false);
  list_.SetAccessibleName("列");
  Put(list_, {kMargin, kMargin, width - 2 * kMargin, height});
  return kMargin + height + kGap;
}

void LayoutDialog::FillLists() {
  for (const AlignmentName& entry : kAlignments) alignment_.AddItem(entry.name);
  for (const TypeName& entry : kTypes) type_.AddItem(entry.name);
  for (const char* format : {"#,##0.00", "#,##0", "0.00", "0.00%", "yyyy-MM-dd"}) {
    format_.AddItem(format);
  }
  for (int places = 0; places <= 6; ++places) decimals_.AddItem(std::to_string(places));
  for (const char* kind : kKinds) kind_.AddItem(kind);
  for (const char* sort : kSorts) sort_.AddItem(sort);
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
  for (CheckBox* box : {&shown_, &group_, &total_, &merge_}) box->Clicked.Add(take);
  for (viewkit::ComboBox* box : {&alignment_, &type_, &format_, &decimals_, &kind_, &sort_}) {
    box->Changed.Add(take);
  }
  width_.Changed.Add(take);
  const auto take_grid = [this] { TakeGrid(); };
  frozen_.Changed.Add(take_grid);
  for (viewkit::TextBox* box : {&header_height_, &row_height_}) box->Changed.Add(take_grid);
  clear_totals_.Clicked.Add(take_grid);
  ok_.Clicked.Add([this] { Accept(); });
  cancel_.Clicked.Add([this] { Close(); });
  defaults_.Clicked.Add([this] {
    outcome_ = Outcome::kDefaults;
    Close();
  });
}

void LayoutDialog::ShowRows() {
  host::RowSet rows(static_cast<std::size_t>(list_.Cols()));
  for (const ColumnChoice& column : choice_.columns) {
    for (int cell = 0; cell < list_.Cols(); ++cell) {
      rows.AppendText(CellOf(column, static_cast<ListColumn>(cell)));
    }
  }
  list_.LoadRows(std::move(rows));
}

void LayoutDialog::ShowRow(std::size_t position) {
  const int row = list_.FixedRows() + static_cast<int>(position);
  for (int cell = 0; cell < list_.Cols(); ++cell) {
    list_.SetTextMatrix(row, cell,
                        CellOf(choice_.columns[position], static_cast<ListColumn>(cell)));
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
  Check(shown_, column->shown);
  width_.SetText(WidthText(*column));
  alignment_.SetListIndex(PlaceOf(column->alignment));
  type_.SetListIndex(PlaceOf(column->type));
  format_.SetText(column->format);
  decimals_.SetText(column->decimals);
  kind_.SetListIndex(column->value_kind);
  sort_.SetListIndex(static_cast<int>(column->sort));
  Check(group_, column->group);
  Check(total_, column->total);
  Check(merge_, column->merge);
  EnableBoxes(*column);
  showing_ = false;
}

void LayoutDialog::EnableBoxes(const ColumnChoice& column) {
  for (viewkit::ComboBox* box : {&decimals_, &kind_}) box->SetEnabled(TakesDecimals(column.type));
}

void LayoutDialog::TakeGrid() {
  const int shown = std::min(choice_.frozen, frozen_.ListCount() - 1);
  if (const auto count = TakenFrom(frozen_, shown)) choice_.frozen = *count;
  TakeHeight(header_height_, choice_.header_height);
  TakeHeight(row_height_, choice_.row_height);
  choice_.clear_totals = IsSet(clear_totals_);
}

void LayoutDialog::TakeColumn() {
  ColumnChoice* column = Chosen();
  if (showing_ || column == nullptr) return;
  column->shown = IsSet(shown_);
  // What the box shows is rounded: only another number is another width.
  if (width_.Text() != WidthText(*column) && WidthIsGood(width_, *column)) {
    column->width = TypedPixels(width_.Text(), kMostWidth) * kTwipsPerPixel;
  }
  if (const auto place = TakenFrom(alignment_, PlaceOf(column->alignment))) {
    column->alignment = kAlignments.at(static_cast<std::size_t>(*place)).alignment;
  }
  if (const auto place = TakenFrom(type_, PlaceOf(column->type))) {
    column->type = kTypes.at(static_cast<std::size_t>(*place)).type;
  }
  TakeText(format_, column->format);
  TakeText(decimals_, column->decimals);
  if (const auto kind = TakenFrom(kind_, column->value_kind)) column->value_kind = *kind;
  if (const auto sort = TakenFrom(sort_, static_cast<int>(column->sort))) {
    column->sort = static_cast<SortOrder>(*sort);
  }
  column->group = IsSet(group_);
  column->total = IsSet(total_);
  column->merge = IsSet(merge_);
  EnableBoxes(*column);
  ShowRow(static_cast<std::size_t>(column - choice_.columns.data()));
}

void LayoutDialog::Toggle() {
  if (Chosen() != nullptr) shown_.Click();
}

void LayoutDialog::Accept() {
  const auto refuse = [this](const char* text, viewkit::Control& control) {
    static_cast<void>(user_.Ask(text, "提示：", viewkit::UserPort::Icon::kWarning,
                                viewkit::UserPort::Buttons::kOk));
    control.SetFocus();
  };
  const ColumnChoice* column = Chosen();
  if (column != nullptr && !WidthIsGood(width_, *column)) {
    return refuse("列宽应当是 1 到 2000 的整数！", width_);
  }
  for (const auto& [box, twips] : {std::pair{&header_height_, choice_.header_height},
                                   std::pair{&row_height_, choice_.row_height}}) {
    if (!HeightIsGood(*box, twips)) return refuse("行高应当是 1 到 500 的整数，或者不填！", *box);
  }
  const auto shows_any = [](const LayoutChoice& choice) {
    return std::ranges::any_of(choice.columns, &ColumnChoice::shown);
  };
  if (shows_any(before_) && !shows_any(choice_)) return refuse("至少要显示一列！", shown_);
  outcome_ = Outcome::kAccepted;
  Close();
}

}  // namespace desk::views
