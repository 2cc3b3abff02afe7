#include "views/layout_property.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/text.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/ports.h"

namespace desk::views {

using viewkit::Alignment;
using viewkit::CheckBox;
using viewkit::ColumnType;
using viewkit::ComboBox;
using viewkit::kTwipsPerPixel;
using viewkit::SortOrder;

int ToPixels(int twips) {
  return (twips + kTwipsPerPixel / 2) / kTwipsPerPixel;
}

int TypedPixels(const std::string& typed, int max) {
  const std::string_view text = host::Trimmed(typed);
  constexpr std::size_t kMaxDigits = 4;
  const bool digits = !text.empty() && text.size() <= kMaxDigits &&
                      text.find_first_not_of("0123456789") == std::string_view::npos;
  const int pixels = digits ? static_cast<int>(host::LeadingNumber(text)) : 0;
  return pixels <= max ? pixels : 0;
}

namespace {

using Names = std::span<const char* const>;

// The names of what a list offers, by the numbers of the file or in the order of the values.
constexpr std::array<const char*, 9> kKinds = {
    "无", "数量", "重量", "单价", "外币金额", "原币金额", "外币税额", "原币税额", "汇率"};
constexpr std::array<const char*, 9> kSorts = {"不排序",   "升序",           "降序",
                                               "数值升序", "数值降序",       "文字升序",
                                               "文字降序", "区分大小写升序", "区分大小写降序"};
constexpr std::array<const char*, 7> kTypeNames = {"自动", "文字", "数值", "整数",
                                                   "货币", "日期", "逻辑"};
constexpr std::array<ColumnType, 7> kTypes = {
    ColumnType::kEmpty,    ColumnType::kString, ColumnType::kDouble, ColumnType::kLong,
    ColumnType::kCurrency, ColumnType::kDate,   ColumnType::kBoolean};
constexpr std::array<const char*, 4> kAlignmentNames = {"自动", "左", "居中", "右"};
constexpr std::array<Alignment, 4> kAlignments = {
    Alignment::kGeneral, Alignment::kLeftCenter, Alignment::kCenterCenter, Alignment::kRightCenter};
constexpr std::array<const char*, 5> kFormats = {"#,##0.00", "#,##0", "0.00", "0.00%",
                                                 "yyyy-MM-dd"};
constexpr std::array<const char*, 7> kDecimals = {"0", "1", "2", "3", "4", "5", "6"};

/// -1 for a type that only a file names.
int PlaceOfType(const ColumnChoice& column) {
  const auto* const found = std::ranges::find(kTypes, column.type);
  return found == kTypes.end() ? -1 : static_cast<int>(found - kTypes.begin());
}
void SetType(ColumnChoice& column, int place) {
  column.type = kTypes.at(static_cast<std::size_t>(place));
}

/// Top, middle and bottom are one here.
int PlaceOfAlignment(const ColumnChoice& column) {
  const int number = static_cast<int>(column.alignment);
  constexpr int kHeights = 3;
  return column.alignment == Alignment::kGeneral ? 0 : number / kHeights + 1;
}
void SetAlignment(ColumnChoice& column, int place) {
  column.alignment = kAlignments.at(static_cast<std::size_t>(place));
}

int PlaceOfKind(const ColumnChoice& column) {
  return column.value_kind;
}
void SetKind(ColumnChoice& column, int place) {
  column.value_kind = place;
}

int PlaceOfSort(const ColumnChoice& column) {
  return static_cast<int>(column.sort);
}
void SetSort(ColumnChoice& column, int place) {
  column.sort = static_cast<SortOrder>(place);
}

/// Only these formats take their decimal places from elsewhere.
bool TakesDecimals(const ColumnChoice& column) {
  return column.type == ColumnType::kEmpty || column.type == ColumnType::kDouble;
}

// What the list says.

template <bool ColumnChoice::*kMember>
std::string FlagText(const ColumnChoice& column) {
  return column.*kMember ? "√" : "";
}
template <std::string ColumnChoice::*kMember>
std::string MemberText(const ColumnChoice& column) {
  return column.*kMember;
}
std::string WidthText(const ColumnChoice& column) {
  return std::to_string(ToPixels(column.width));
}
std::string TypeText(const ColumnChoice& column) {
  const int place = PlaceOfType(column);
  if (place < 0) return std::to_string(static_cast<int>(column.type));
  return kTypeNames.at(static_cast<std::size_t>(place));
}
std::string AlignmentText(const ColumnChoice& column) {
  return kAlignmentNames.at(static_cast<std::size_t>(PlaceOfAlignment(column)));
}
/// The first name stands for nothing.
std::string NameText(const std::array<const char*, 9>& names, int place) {
  return place == 0 ? "" : names.at(static_cast<std::size_t>(place));
}
std::string KindText(const ColumnChoice& column) {
  return NameText(kKinds, column.value_kind);
}
std::string SortText(const ColumnChoice& column) {
  return NameText(kSorts, PlaceOfSort(column));
}

// The boxes, by what they hold.

class FlagBox : public PropertyBox {
 public:
  FlagBox(const char* caption, int index, bool ColumnChoice::*member)
      : box_("Chk", index), member_(member) {
    box_.SetCaption(caption);
  }
  [[nodiscard]] viewkit::Control& Control() override { return box_; }
  void Show(const ColumnChoice& column) override {
    box_.SetValue(column.*member_ ? CheckBox::kChecked : CheckBox::kUnchecked);
  }
  void Take(ColumnChoice& column) const override {
    column.*member_ = box_.Value() == CheckBox::kChecked;
  }
  void Click() override { box_.Click(); }
  void OnChange(std::function<void()> changed) override { box_.Clicked.Add(std::move(changed)); }

 private:
  CheckBox box_;
  bool ColumnChoice::*member_;
};

class WidthBox : public PropertyBox {
 public:
  explicit WidthBox(int index) : box_("Txt", index) {}
  [[nodiscard]] viewkit::Control& Control() override { return box_; }
  void Show(const ColumnChoice& column) override { box_.SetText(WidthText(column)); }
  void Take(ColumnChoice& column) const override {
    // What the box shows is rounded: only another number is another width.
    const int typed = box_.Text() == WidthText(column) ? 0 : TypedPixels(box_.Text(), kMax);
    if (typed != 0) column.width = typed * kTwipsPerPixel;
  }
  [[nodiscard]] bool IsGood(const ColumnChoice& column) const override {
    return box_.Text() == WidthText(column) || TypedPixels(box_.Text(), kMax) != 0;
  }
  void OnChange(std::function<void()> changed) override { box_.Changed.Add(std::move(changed)); }

 private:
  static constexpr int kMax = 2000;  // pixels
  viewkit::TextBox box_;
};

class ChoiceBox : public PropertyBox {
 public:
  struct Access {
    int (*place)(const ColumnChoice&);
    void (*set)(ColumnChoice&, int place);
  };
  ChoiceBox(int index, Names names, Access access)
      : box_(ComboBox::Style::kList, "Combo", index), access_(access) {
    for (const char* name : names) box_.AddItem(name);
  }
  [[nodiscard]] viewkit::Control& Control() override { return box_; }
  void Show(const ColumnChoice& column) override { box_.SetListIndex(access_.place(column)); }
  void Take(ColumnChoice& column) const override {
    const int place = box_.ListIndex();
    if (place >= 0 && place != access_.place(column)) access_.set(column, place);
  }
  void OnChange(std::function<void()> changed) override { box_.Changed.Add(std::move(changed)); }

 private:
  ComboBox box_;
  Access access_;
};

/// Any text, with some to choose from.
class TextBox : public PropertyBox {
 public:
  TextBox(int index, Names offers, std::string ColumnChoice::*member)
      : box_(ComboBox::Style::kEditable, "Combo", index), member_(member) {
    for (const char* offer : offers) box_.AddItem(offer);
  }
  [[nodiscard]] viewkit::Control& Control() override { return box_; }
  void Show(const ColumnChoice& column) override { box_.SetText(column.*member_); }
  void Take(ColumnChoice& column) const override {
    // Blanks that were there before are none of the user's.
    std::string& text = column.*member_;
    if (box_.Text() != text) text = std::string(host::Trimmed(box_.Text()));
  }
  void OnChange(std::function<void()> changed) override { box_.Changed.Add(std::move(changed)); }

 private:
  ComboBox box_;
  std::string ColumnChoice::*member_;
};

template <bool ColumnChoice::*kMember, int kIndex>
std::unique_ptr<PropertyBox> Flag(const char* caption) {
  return std::make_unique<FlagBox>(caption, kIndex, kMember);
}
std::unique_ptr<PropertyBox> Width(const char* /*caption*/) {
  return std::make_unique<WidthBox>(0);
}
template <const auto& kNames, int (*kPlace)(const ColumnChoice&), void (*kSet)(ColumnChoice&, int),
          int kIndex>
std::unique_ptr<PropertyBox> Choice(const char* /*caption*/) {
  return std::make_unique<ChoiceBox>(kIndex, kNames, ChoiceBox::Access{kPlace, kSet});
}
template <std::string ColumnChoice::*kMember, const auto& kOffers, int kIndex>
std::unique_ptr<PropertyBox> Text(const char* /*caption*/) {
  return std::make_unique<TextBox>(kIndex, kOffers, kMember);
}

using Column = ColumnChoice;
constexpr Alignment kLeft = Alignment::kLeftCenter;
constexpr Alignment kCenter = Alignment::kCenterCenter;
constexpr Alignment kRight = Alignment::kRightCenter;

constexpr std::array kProperties = {
    ColumnProperty{"列", 1300, kLeft, MemberText<&Column::title>},
    ColumnProperty{"显示", 525, kCenter, FlagText<&Column::shown>, Flag<&Column::shown, 0>,
                   "显示(&S)"},
    ColumnProperty{"宽度", 600, kRight, WidthText, Width, "宽度(&W)", 0, 0, 1},
    ColumnProperty{"数据类型", 900, kLeft, TypeText, Choice<kTypeNames, PlaceOfType, SetType, 6>,
                   "数据类型(&D)", 7, 1, 0},
    ColumnProperty{"格式", 900, kLeft, MemberText<&Column::format>,
                   Text<&Column::format, kFormats, 1>, "格式(&F)", 2, 1, 1},
    ColumnProperty{"小数位", 690, kLeft, MemberText<&Column::decimals>,
                   Text<&Column::decimals, kDecimals, 2>, "小数位(&X)", 3, 1, 2, TakesDecimals},
    ColumnProperty{"取位依据", 900, kLeft, KindText, Choice<kKinds, PlaceOfKind, SetKind, 3>,
                   "取位依据(&T)", 4, 1, 3, TakesDecimals},
    ColumnProperty{"对齐", 525, kLeft, AlignmentText,
                   Choice<kAlignmentNames, PlaceOfAlignment, SetAlignment, 0>, "对齐(&A)", 1, 0, 2},
    ColumnProperty{"排序", 945, kLeft, SortText, Choice<kSorts, PlaceOfSort, SetSort, 4>,
                   "排序(&P)", 5, 0, 3},
    ColumnProperty{"合并", 525, kCenter, FlagText<&Column::merge>, Flag<&Column::merge, 3>,
                   "合并相同的相邻值(&M)", -1, 2, 2},
    ColumnProperty{"小计", 525, kCenter, FlagText<&Column::group>, Flag<&Column::group, 1>,
                   "按此列分组小计(&G)", -1, 2, 0},
    ColumnProperty{"合计", 525, kCenter, FlagText<&Column::total>, Flag<&Column::total, 2>,
                   "合计此列(&Z)", -1, 2, 1},
};

}  // namespace

std::span<const ColumnProperty> ColumnProperties() {
  return kProperties;
}

}  // namespace desk::views
