#include "editing/account_form.h"

#include "viewkit/controls/form_rows.h"

namespace tavrix::editing {

namespace {

using host::Bounds;
using viewkit::ComboBox;
namespace form = viewkit::form;

/// First window identifier of each control array.
enum ArrayId { kTextId = 100, kCheckId = 200, kOptionId = 300, kListId = 400, kButtonId = 500 };

// The arrangement, in twips: two columns of equal width.
constexpr int kColumnWidth = 4080;
constexpr int kRightColumn = form::kMargin + kColumnWidth + form::kGap;
constexpr int kFormWidth = kRightColumn + kColumnWidth + form::kMargin;
constexpr int kLabelWidth = 1380;
constexpr int kFieldWidth = kColumnWidth - 2 * form::kMargin - kLabelWidth;

constexpr int kFullFieldWidth = kFormWidth - 4 * form::kMargin - kLabelWidth;

constexpr int kAccountTop = form::kMargin;
constexpr int kKindsTop = kAccountTop + form::FrameHeight(5) + form::kGap;
constexpr int kFlagsTop = kKindsTop + form::FrameHeight(4) + form::kGap;
constexpr int kButtonsTop = kFlagsTop + form::FrameHeight(1) + form::kMargin;
constexpr int kFormHeight = kButtonsTop + form::kButtonHeight + form::kMargin;

/// The rows inside a frame that starts at `left` and `top`.
constexpr form::Rows RowsIn(int left, int top) {
  return form::Rows::InFrame(left, top, kLabelWidth, kFieldWidth);
}
/// Two options in the place of one box.
constexpr Bounds HalfField(const form::Rows& rows, int row, int half) {
  return rows.At(row, kLabelWidth + half * kFieldWidth / 2, kFieldWidth / 2);
}
/// A label in the place of a box.
constexpr Bounds WithoutLabel(Bounds label) {
  label.left += kLabelWidth;
  label.width = kFullFieldWidth;
  return label;
}
/// Two boxes beside one another, without labels.
constexpr Bounds Half(const form::Rows& rows, int row, int half) {
  constexpr int kHalf = kColumnWidth / 2 - form::kMargin;
  return rows.At(row, half * kHalf, kHalf);
}

}  // namespace

// Controls come in the order of the Tab key; a label comes before the box it names, so that its
// mnemonic leads there.
AccountForm::AccountForm() : DialogModel("TavrixAccount") {
  CreateControls();
  PlaceAccount();
  PlaceKinds();
  PlaceAuxiliary();
  PlaceFlags();
  PlaceButtons();
  SetSize(kFormWidth, kFormHeight);
  SetButtons(Cmd(kSaveButton), Cmd(kCancelButton));
}

void AccountForm::CreateControls() {
  for (int i = 0; i < kTexts; ++i) txt_.emplace_back("Txt", i);
  for (int i = 0; i < kChecks; ++i) chk_.emplace_back("Chk", i);
  for (int i = 0; i < kOptions; ++i) opt_.emplace_back(direction_, "opt", i);
  for (int i = 0; i < kLists; ++i) {
    const auto style = i == kGatherList ? ComboBox::Style::kEditable : ComboBox::Style::kList;
    combo_.emplace_back(style, "Combo", i);
  }
  for (int i = 0; i < kButtons; ++i) cmd_.emplace_back("Cmd", i);
}

// Codes, categories and mnemonics are short; names take the whole width.
void AccountForm::PlaceAccount() {
  PlaceFrame("科目",
             {form::kMargin, kAccountTop, kFormWidth - 2 * form::kMargin, form::FrameHeight(5)});
  const form::Rows left = RowsIn(form::kMargin, kAccountTop);
  const form::Rows right = RowsIn(kRightColumn, kAccountTop);
  const form::Rows whole =
      form::Rows::InFrame(form::kMargin, kAccountTop, kLabelWidth, kFullFieldWidth);
  PlaceLabel("上级科目", left.Label(0));
  above_ = &PlaceLabel("", WithoutLabel(whole.Label(0)));
  PlaceLabel("编码(&B)", left.Label(1));
  PlaceText(kCodeBox, left.Field(1));
  PlaceLabel("类别(&L)", right.Label(1));
  PlaceList(kCategoryList, right.Field(1));
  PlaceLabel("名称(&N)", left.Label(2));
  PlaceText(kNameBox, whole.Field(2));
  PlaceLabel("助记码(&M)", left.Label(3));
  PlaceText(kMnemonicBox, left.Field(3));
  PlaceLabel("余额方向", right.Label(3));
  PlaceOption(kDebitOption, "借方(&J)", HalfField(right, 3, 0));
  PlaceOption(kCreditOption, "贷方(&D)", HalfField(right, 3, 1));
  PlaceLabel("英文名称(&E)", left.Label(4));
  PlaceText(kEnglishNameBox, whole.Field(4));
}

void AccountForm::PlaceKinds() {
  PlaceFrame("核算方式", {form::kMargin, kKindsTop, kColumnWidth, form::FrameHeight(4)});
  const form::Rows rows = RowsIn(form::kMargin, kKindsTop);
  PlaceCheck(kCurrencyCheck, "外币核算(&W)", rows.Lead(0));
  PlaceList(kCurrencyList, rows.Field(0));
  PlaceCheck(kQuantityCheck, "数量核算(&Q)", rows.Lead(1));
  PlaceList(kUnitList, rows.Field(1));
  PlaceLabel("账页格式(&Y)", rows.Label(2));
  PlaceList(kBookTypeList, rows.Field(2));
  PlaceCheck(kGatherCheck, "汇总到(&G)", rows.Lead(3));
  PlaceList(kGatherList, rows.Field(3));
  // The check box before them says whether, not what.
  Combo(kCurrencyList).SetAccessibleName("外币币种");
  Combo(kUnitList).SetAccessibleName("计量单位");
  Combo(kGatherList).SetAccessibleName("汇总到");
}

void AccountForm::PlaceAuxiliary() {
  PlaceFrame("辅助核算", {kRightColumn, kKindsTop, kColumnWidth, form::FrameHeight(4)});
  const form::Rows rows = RowsIn(kRightColumn, kKindsTop);
  PlaceCheck(kDepartmentCheck, "部门核算(&1)", Half(rows, 0, 0));
  PlaceCheck(kPersonCheck, "个人往来(&2)", Half(rows, 0, 1));
  PlaceCheck(kCustomerCheck, "客户往来(&3)", Half(rows, 1, 0));
  PlaceCheck(kSupplierCheck, "供应商往来(&4)", Half(rows, 1, 1));
  PlaceCheck(kProjectCheck, "项目核算(&5)", Half(rows, 2, 0));
}

void AccountForm::PlaceFlags() {
  PlaceFrame("标志",
             {form::kMargin, kFlagsTop, kFormWidth - 2 * form::kMargin, form::FrameHeight(1)});
  const form::Rows left = RowsIn(form::kMargin, kFlagsTop);
  const form::Rows right = RowsIn(kRightColumn, kFlagsTop);
  constexpr int kThird = (kColumnWidth - 2 * form::kMargin) / 3;
  PlaceCheck(kJournalCheck, "日记账(&R)", left.At(0, 0, kThird));
  PlaceCheck(kBankBookCheck, "银行账(&K)", left.At(0, kThird, kThird));
  PlaceCheck(kClosedCheck, "封存(&F)", left.At(0, 2 * kThird, kThird));
  PlaceLabel("受控系统(&X)", right.Label(0));
  PlaceText(kControlledByBox, right.Field(0));
}

void AccountForm::PlaceButtons() {
  PlaceButton(kSaveButton, "保存(&S)", form::Button(kFormWidth, 1, kButtonsTop));
  PlaceButton(kCancelButton, "取消(&C)", form::Button(kFormWidth, 0, kButtonsTop));
}

void AccountForm::PlaceFrame(const char* caption, const Bounds& bounds) {
  auto& frame = frames_.emplace_back("Frame", static_cast<int>(frames_.size()));
  frame.SetCaption(caption);
  frame.SetBounds(bounds);
  Add(frame);
}

viewkit::Label& AccountForm::PlaceLabel(const char* caption, const Bounds& bounds) {
  auto& label = labels_.emplace_back("Label", static_cast<int>(labels_.size()));
  label.SetCaption(caption);
  label.SetBounds(bounds);
  Add(label);
  return label;
}

void AccountForm::Place(viewkit::Control& control, int identifier, const Bounds& bounds) {
  control.SetBounds(bounds);
  Add(control, identifier);
}

void AccountForm::PlaceText(int index, const Bounds& bounds) {
  Place(Txt(index), kTextId + index, bounds);
}

void AccountForm::PlaceList(int index, const Bounds& bounds) {
  Place(Combo(index), kListId + index, bounds);
}

void AccountForm::PlaceCheck(int index, const char* caption, const Bounds& bounds) {
  Chk(index).SetCaption(caption);
  Place(Chk(index), kCheckId + index, bounds);
}

void AccountForm::PlaceOption(int index, const char* caption, const Bounds& bounds) {
  opt(index).SetCaption(caption);
  Place(opt(index), kOptionId + index, bounds);
}

void AccountForm::PlaceButton(int index, const char* caption, const Bounds& bounds) {
  Cmd(index).SetCaption(caption);
  Place(Cmd(index), kButtonId + index, bounds);
}

void AccountForm::ShowAbove(const std::string& text) {
  above_->SetCaption(text);
}

void AccountForm::ResetControls() {
  for (auto& box : txt_) box.SetText("");
  for (auto& box : chk_) {
    box.SetValue(viewkit::CheckBox::kUnchecked);
    box.SetEnabled(true);
  }
  for (auto& list : combo_) {
    list.Clear();
    list.SetText("");
    list.SetEnabled(true);
  }
  opt(kDebitOption).SetValue(true);
}

}  // namespace tavrix::editing
