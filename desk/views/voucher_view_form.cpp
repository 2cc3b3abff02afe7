// The controls of the voucher: making and arranging them.

#include <algorithm>
#include <array>
#include <initializer_list>

#include "views/account_range.h"
#include "views/voucher_view.h"

namespace desk::views {

namespace host = tavrix::host;
using viewkit::Control;

namespace {

/// The form is drawn in pixels at 96 dots per inch; models have twips.
constexpr int Px(int pixels) {
  return pixels * viewkit::kTwipsPerPixel;
}

struct ColumnPlan {
  const char* heading;
  int width;
  int min_width;  ///< where the view is narrow
  bool aligns_right;
};
constexpr std::array kColumns = {
    ColumnPlan{"科目编码", Px(96), Px(76), false},  ColumnPlan{"科目名称", Px(170), Px(90), false},
    ColumnPlan{"摘要", Px(220), Px(70), false},     ColumnPlan{"借方金额", Px(120), Px(100), true},
    ColumnPlan{"贷方金额", Px(120), Px(100), true}, ColumnPlan{"往来", Px(160), Px(70), false}};
constexpr std::size_t kSummary = 2;
/// A bar to scroll by, and the frame.
constexpr int kListEdges = Px(17 + 2);

constexpr int kMargin = Px(10);
constexpr int kGap = Px(8);
constexpr int kNarrowGap = Px(6);
constexpr int kButton = Px(92);

/// Puts controls beside each other.
class Row {
 public:
  Row(int left, int top, int height) : left_(left), top_(top), height_(height) {}
  [[nodiscard]] int Left() const { return left_; }
  void Put(Control& control, int width, int gap) {
    control.SetBounds({left_, top_, std::max(0, width), height_});
    left_ += width + gap;
  }

 private:
  int left_;
  int top_;
  int height_;
};

}  // namespace

void VoucherView::MakeControls() {
  date_label_.SetCaption("日期");
  date_.SetValue(plan_.today);
  summary_label_.SetCaption("摘要");
  code_label_.SetCaption("科目");
  code_.SetPlaceholder("编码、名称或助记码");
  drop_.SetCaption("▼");
  drop_.SetTabStop(false);  // its keys are F4 and Alt+Down in the box
  debit_label_.SetCaption("借方");
  credit_label_.SetCaption("贷方");
  for (viewkit::TextBox* amount : {&debit_, &credit_, &foreign_, &rate_, &quantity_}) {
    amount->SetAlignRight(true);
  }
  rate_label_.SetCaption("汇率");
  std::vector<viewkit::ListView::Column> columns;
  for (const ColumnPlan& plan : kColumns) {
    columns.push_back({plan.heading, plan.width, plan.aligns_right});
  }
  list_.SetColumns(std::move(columns));
  list_.SetMultiSelect(false);
  list_.SetAccessibleName("分录");
  list_frame_.SetBackColor(viewkit::color::kHighlight);
  list_frame_.SetVisible(false);
  remove_.SetCaption("删除分录(&D)");
  clear_.SetCaption("清空(&E)");
  post_.SetCaption("过账(&G)");
  range_label_.SetCaption("科目范围");
  for (const AccountRange& range : AccountRanges()) range_.AddItem(range.title);
  range_.SetListIndex(0);
  range_codes_.SetPlaceholder("如 1001,22");
  range_codes_.SetEnabled(false);
  several_.SetCaption("多选(&M)");
  take_.SetCaption("取所选(&T)");
  for (Control* control : std::initializer_list<Control*>{
           &date_label_,     &date_,     &summary_label_, &summary_, &code_label_,   &code_,
           &drop_,           &name_,     &foreign_label_, &foreign_, &rate_label_,   &rate_,
           &quantity_label_, &quantity_, &debit_label_,   &debit_,   &credit_label_, &credit_,
           &partner_label_,  &partner_,  &add_,           &list_,    &list_frame_,   &remove_,
           &clear_,          &post_,     &range_label_,   &range_,   &range_codes_,  &several_,
           &take_,           &sums_,     &answer_}) {
    controls_.Add(*control);
  }
  ShowForeign();
}

void VoucherView::SetMeasure(const viewkit::TextMeasure& measure) {
  measure_ = &measure;
  Resize(width_, height_);
}

void VoucherView::SetAnswerColors(viewkit::Color refused, viewkit::Color done) {
  refused_color_ = refused;
  done_color_ = done;
  answer_.SetForeColor(refusal_ ? refused : done);
}

void VoucherView::Resize(int width, int height) {
  width_ = width;
  height_ = height;
  const int line = measure_->LineHeight() + Px(8);
  int top = Px(4);
  top = ArrangeHead(top, line, width);
  top = ArrangeEntry(top, line, width);
  top = ArrangeForeign(top, line, width);
  const int foot = height - line - kGap;
  const int list_width = std::max(0, width - 2 * kMargin);
  const int list_height = std::max(0, foot - top - kGap);
  list_.SetBounds({kMargin, top, list_width, list_height});
  constexpr int kFrame = Px(2);
  list_frame_.SetBounds(
      {kMargin - kFrame, top - kFrame, list_width + 2 * kFrame, list_height + 2 * kFrame});
  FitColumns(list_width);
  ArrangeFoot(foot, line, width);
}

/// The columns share the list's width, so that it needs no bar to be scrolled by.
void VoucherView::FitColumns(int list_width) {
  int over = kListEdges - list_width;
  int spare = 0;
  for (const ColumnPlan& plan : kColumns) {
    over += plan.width;
    spare += plan.width - plan.min_width;
  }
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    const int own_spare = kColumns[i].width - kColumns[i].min_width;
    int width = kColumns[i].width;
    if (over > 0) {
      width -= static_cast<int>(std::int64_t{std::min(over, spare)} * own_spare / spare);
    }
    if (over < 0 && i == kSummary) width -= over;
    list_.SetColumnWidth(i, width);
  }
}

int VoucherView::ArrangeHead(int top, int line, int width) {
  Row row(kMargin, top, line);
  row.Put(date_label_, Px(32), Px(4));
  row.Put(date_, Px(120), Px(16));
  row.Put(summary_label_, Px(32), Px(4));
  constexpr int kRangeWidth = Px(16 + 56 + 4 + 112 + 6 + 120) + kMargin;
  row.Put(summary_, std::clamp(width - row.Left() - kRangeWidth, Px(90), Px(360)), Px(16));
  row.Put(range_label_, Px(56), Px(4));
  row.Put(range_, Px(112), kNarrowGap);
  row.Put(range_codes_, Px(120), 0);
  return top + line + kNarrowGap;
}

/// A line of its own, while it is wanted.
int VoucherView::ArrangeForeign(int top, int line, int width) {
  if (!foreign_.Visible() && !quantity_.Visible()) return top;
  Row row(kMargin, top, line);
  const int label = std::min(Px(120), width / 8);
  if (foreign_.Visible()) {
    row.Put(foreign_label_, label, Px(4));
    row.Put(foreign_, Px(110), Px(12));
    row.Put(rate_label_, Px(32), Px(4));
    row.Put(rate_, Px(90), Px(16));
  }
  if (quantity_.Visible()) {
    row.Put(quantity_label_, label, Px(4));
    row.Put(quantity_, Px(90), 0);
  }
  return top + line + kGap;
}

int VoucherView::ArrangeEntry(int top, int line, int width) {
  Row row(kMargin, top, line);
  row.Put(code_label_, Px(32), Px(4));
  row.Put(code_, Px(140), 0);
  row.Put(drop_, Px(24), kNarrowGap);
  row.Put(several_, Px(64), kNarrowGap);
  row.Put(take_, Px(76), kGap);
  // In a narrow window the amounts go to a line of their own.
  constexpr int kName = Px(120);
  constexpr int kAmounts = Px(8 + 36 + 112 + 36 + 112 + 68 + 60) + kGap + kButton + kMargin;
  if (row.Left() + kName + kAmounts > width) {
    row.Put(name_, width - row.Left() - kMargin, 0);
    top += line + kNarrowGap;
    row = Row(kMargin, top, line);
  } else {
    row.Put(name_, kName, kGap);
  }
  row.Put(debit_label_, Px(32), Px(4));
  row.Put(debit_, Px(100), Px(12));
  row.Put(credit_label_, Px(32), Px(4));
  row.Put(credit_, Px(100), Px(12));
  row.Put(partner_label_, Px(64), Px(4));
  row.Put(partner_, std::clamp(width - row.Left() - kButton - kMargin - kGap, Px(60), Px(200)),
          kGap);
  row.Put(add_, kButton, 0);
  return top + line + kGap;
}

void VoucherView::ArrangeFoot(int top, int line, int width) {
  int right = width - kMargin;
  for (Control* button : std::initializer_list<Control*>{&post_, &clear_, &remove_}) {
    button->SetBounds({right - kButton, top, kButton, line});
    right -= kButton + kNarrowGap;
  }
  answer_.SetBounds({kMargin, top, std::max(0, right - kGap - kMargin), line});
  ArrangeSums();
}

/// The answer has what the sums leave of their line. The gap is the sums': some fonts paint wider
/// than they measure.
void VoucherView::ArrangeSums() {
  host::Bounds rest = answer_.GetBounds();
  const int right = rest.left + rest.width;
  const int wanted = measure_->Width(sums_.Caption(), false) + Px(24);
  const int width = std::clamp(wanted, 0, std::max(0, right - kMargin));
  sums_.SetBounds({kMargin, rest.top, width, rest.height});
  rest.left = kMargin + width;
  rest.width = std::max(0, right - rest.left);
  answer_.SetBounds(rest);
}

}  // namespace desk::views
