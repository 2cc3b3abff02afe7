#include "views/layout_dialog.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/row_set.h"
#include "host/text.h"

namespace desk::views {

using host::Bounds;
using viewkit::Alignment;
using viewkit::CheckBox;
using viewkit::kTwipsPerPixel;
using viewkit::SortOrder;

namespace {

// The arrangement, in twips.
constexpr int kMargin = 180;
constexpr int kGap = 120;
constexpr int kRowPitch = 420;
constexpr int kBoxHeight = 315;
constexpr int kFrameTop = 330;
constexpr int kButtonWidth = 1290;
constexpr int kButtonHeight = 390;
constexpr int kLabelDrop = 45;  // a label's text stands on the line of the text in its box

constexpr int kMostWidthPixels = 2000;

/// Columns of the list.
enum ListColumn {
  kTitle,
  kShown,
  kWidth,
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
    {{"列", 1650, Alignment::kLeftCenter},
     {"显示", 600, Alignment::kCenterCenter},
     {"宽度", 660, Alignment::kRightCenter},
     {"格式", 1200, Alignment::kLeftCenter},
     {"小数位", 750, Alignment::kLeftCenter},
     {"数值类型", 1020, Alignment::kLeftCenter},
     {"对齐", 660, Alignment::kLeftCenter},
     {"排序", 1020, Alignment::kLeftCenter},
     {"合并", 600, Alignment::kCenterCenter},
     {"小计", 600, Alignment::kCenterCenter},
     {"合计", 600, Alignment::kCenterCenter}}};

/// By the numbers of the file.
constexpr std::array<const char*, 9> kKinds = {
    "无", "数量", "重量", "单价", "外币金额", "原币金额", "外币税额", "原币税额", "汇率"};
constexpr std::array<const char*, 9> kSorts = {"不排序",   "升序",           "降序",
                                               "数值升序", "数值降序",       "文字升序",
                                               "文字降序", "区分大小写升序", "区分大小写降序"};

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

/// Pixels that a user has typed; 0 when it is no width.
int TypedWidth(const std::string& typed) {
  const std::string_view text = host::Trimmed(typed);
  constexpr std::size_t kMostDigits = 4;
  const bool digits = !text.empty() && text.size() <= kMostDigits &&
                      text.find_first_not_of("0123456789") == std::string_view::npos;
  const int pixels = digits ? static_cast<int>(host::LeadingNumber(text)) : 0;
  return pixels <= kMostWidthPixels ? pixels : 0;
}

}  // namespace

LayoutDialog::LayoutDialog(Plan plan, LayoutChoice choice, viewkit::UserPort& user)
    : DialogModel("DeskLayout"), plan_(std::move(plan)), choice_(std::move(choice)), user_(user) {
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

void LayoutDialog::Put(viewkit::Control& control, const Bounds& bounds) {
  control.SetBounds(bounds);
  Add(control);
}

void LayoutDialog::PutLabel(viewkit::Label& label, const char* caption, const Bounds& bounds) {
  label.SetCaption(caption);
  Put(label, {bounds.left, bounds.top + kLabelDrop, bounds.width, bounds.height - kLabelDrop});
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
  Put(list_, {kMargin, kMargin, width - 2 * kMargin, height});
  return kMargin + height + kGap;
}

void LayoutDialog::PlaceEverything() {
  constexpr int kListHeight = 3900;
  constexpr int kThird = 3180;
  constexpr int kWidthAll = 3 * kThird + 4 * kMargin;
  constexpr int kLabel = 1140;
  constexpr int kField = kThird - kLabel - kMargin;
  const int top = PlaceList(kWidthAll, kListHeight);
  frame_.SetCaption("所选列");
  constexpr int kFrameHeight = kFrameTop + 4 * kRowPitch;
  Put(frame_, {kMargin, top, kWidthAll - 2 * kMargin, kFrameHeight});
  const auto at = [&](int third, int row, int offset, int width) -> Bounds {
    return {2 * kMargin + third * (kThird + kMargin / 2) + offset,
            top + kFrameTop + row * kRowPitch, width, kBoxHeight};
  };
  const auto label = [&](int third, int row) { return at(third, row, 0, kLabel); };
  const auto field = [&](int third, int row) { return at(third, row, kLabel, kField); };
  shown_.SetCaption("显示(&S)");
  Put(shown_, at(0, 0, 0, kThird - kMargin));
  PutLabel(width_label_, "宽度(&W)", label(0, 1));
  Put(width_, field(0, 1));
  PutLabel(alignment_label_, "对齐(&A)", label(0, 2));
  Put(alignment_, field(0, 2));
  PutLabel(format_label_, "格式(&F)", label(1, 0));
  Put(format_, field(1, 0));
  PutLabel(decimals_label_, "小数位(&X)", label(1, 1));
  Put(decimals_, field(1, 1));
  PutLabel(kind_label_, "数值类型(&T)", label(1, 2));
  Put(kind_, field(1, 2));
  PutLabel(sort_label_, "排序(&P)", label(2, 0));
  Put(sort_, field(2, 0));
  group_.SetCaption("按此列分组小计(&G)");
  Put(group_, at(2, 1, 0, kThird - kMargin));
  total_.SetCaption("合计此列(&Z)");
  Put(total_, at(2, 2, 0, kThird - kMargin));
  merge_.SetCaption("合并相同的相邻值(&M)");
  Put(merge_, at(2, 3, 0, kThird - kMargin));
  const int bottom = top + kFrameHeight + kMargin;
  PutLabel(frozen_label_, "冻结(&L)", {kMargin, bottom + kLabelDrop, 720, kBoxHeight});
  Put(frozen_, {kMargin + 720, bottom + kLabelDrop, 1500, kBoxHeight});
  PlaceButtons(kWidthAll, bottom);
}

void LayoutDialog::PlaceWidths() {
  constexpr int kListHeight = 2400;
  constexpr int kWidthAll = 4800;
  constexpr int kLabel = 900;
  int top = PlaceList(kWidthAll, kListHeight);
  shown_.SetCaption("显示(&S)");
  Put(shown_, {kMargin, top, 1500, kBoxHeight});
  PutLabel(width_label_, "宽度(&W)", {kWidthAll / 2, top, kLabel, kBoxHeight});
  Put(width_, {kWidthAll / 2 + kLabel, top, kWidthAll / 2 - kLabel - kMargin, kBoxHeight});
  top += kRowPitch;
  if (!plan_.for_others.empty()) {
    others_.SetCaption(plan_.for_others);
    Put(others_, {kMargin, top, kWidthAll - 2 * kMargin, kBoxHeight});
    top += kRowPitch;
  }
  PlaceButtons(kWidthAll, top + kMargin / 2);
}

void LayoutDialog::PlaceButtons(int width, int top) {
  int left = width - kMargin - 2 * kButtonWidth - kGap;
  if (plan_.has_defaults) {
    defaults_.SetCaption("恢复默认(&R)");
    Put(defaults_, {left - kButtonWidth - kGap, top, kButtonWidth, kButtonHeight});
  }
  ok_.SetCaption("确定");
  Put(ok_, {left, top, kButtonWidth, kButtonHeight});
  cancel_.SetCaption("取消");
  Put(cancel_, {left + kButtonWidth + kGap, top, kButtonWidth, kButtonHeight});
  SetSize(width, top + kButtonHeight + kMargin);
}

void LayoutDialog::FillLists() {
  for (const AlignmentName& entry : kAlignments) alignment_.AddItem(entry.name);
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
}

void LayoutDialog::Listen() {
  const auto take = [this] { TakeColumn(); };
  list_.RowColChange.Add([this] { ShowColumn(); });
  list_.DoubleClick.Add([this] { Toggle(); });
  list_.KeyDown.Add([this](viewkit::Key key, viewkit::Modifiers modifiers) {
    if (key == viewkit::Key::kSpace && !modifiers.control && !modifiers.alt) Toggle();
  });
  for (CheckBox* box : {&shown_, &group_, &total_, &merge_}) box->Clicked.Add(take);
  for (viewkit::ComboBox* box : {&alignment_, &format_, &decimals_, &kind_, &sort_}) {
    box->Changed.Add(take);
  }
  width_.Changed.Add(take);
  frozen_.Changed.Add([this] { choice_.frozen = std::max(0, frozen_.ListIndex()); });
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
  width_.SetText(std::to_string(ToPixels(column->width)));
  alignment_.SetListIndex(PlaceOf(column->alignment));
  format_.SetText(column->format);
  decimals_.SetText(column->decimals);
  kind_.SetListIndex(column->value_kind);
  sort_.SetListIndex(static_cast<int>(column->sort));
  Check(group_, column->group);
  Check(total_, column->total);
  Check(merge_, column->merge);
  for (viewkit::Control* box : std::initializer_list<viewkit::Control*>{&decimals_, &kind_}) {
    box->SetEnabled(column->numeric);
  }
  showing_ = false;
}

void LayoutDialog::TakeColumn() {
  ColumnChoice* column = Chosen();
  if (showing_ || column == nullptr) return;
  column->shown = IsSet(shown_);
  const int pixels = TypedWidth(width_.Text());
  // What the box shows is rounded: only another number is another width.
  if (pixels != 0 && pixels != ToPixels(column->width)) column->width = pixels * kTwipsPerPixel;
  if (const int place = alignment_.ListIndex(); place >= 0 && place != PlaceOf(column->alignment)) {
    column->alignment = kAlignments.at(static_cast<std::size_t>(place)).alignment;
  }
  column->format = std::string(host::Trimmed(format_.Text()));
  column->decimals = std::string(host::Trimmed(decimals_.Text()));
  column->value_kind = std::max(0, kind_.ListIndex());
  column->sort = static_cast<SortOrder>(std::max(0, sort_.ListIndex()));
  column->group = IsSet(group_);
  column->total = IsSet(total_);
  column->merge = IsSet(merge_);
  ShowRow(static_cast<std::size_t>(column - choice_.columns.data()));
}

void LayoutDialog::Toggle() {
  if (Chosen() != nullptr) shown_.Click();
}

bool LayoutDialog::WidthIsGood() const {
  return TypedWidth(width_.Text()) != 0;
}

void LayoutDialog::Accept() {
  const auto refuse = [this](const char* text, viewkit::Control& control) {
    static_cast<void>(user_.Ask(text, "提示：", viewkit::UserPort::Icon::kWarning,
                                viewkit::UserPort::Buttons::kOk));
    control.SetFocus();
  };
  if (!WidthIsGood()) return refuse("列宽应当是 1 到 2000 的整数！", width_);
  const bool any = std::ranges::any_of(choice_.columns, &ColumnChoice::shown);
  if (!any) return refuse("至少要显示一列！", shown_);
  outcome_ = Outcome::kAccepted;
  Close();
}

}  // namespace desk::views
