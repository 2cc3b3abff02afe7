#include "views/reverse_dialog.h"

#include "viewkit/controls/form_rows.h"

namespace desk::views {

namespace form = viewkit::form;

ReverseDialog::ReverseDialog(const std::string& name, std::chrono::year_month_day date)
    : DialogModel("DeskReverse") {
  constexpr int kWidth = 6600;
  const form::Rows rows{form::kMargin, form::kMargin, 1300, 1900};
  const int button_top = form::kMargin + 3 * form::kRowPitch + form::kMargin / 2;
  SetCaption("冲销凭证");
  what_.SetCaption("冲销 " + name + "凭证。");
  how_.SetCaption("生成一张新凭证，方向相同、金额为负数（红字）；原凭证不变。");
  date_label_.SetCaption("冲销日期(&D)");
  date_.SetValue(date);
  ok_.SetCaption("冲销(&R)");
  cancel_.SetCaption("取消");
  what_.SetBounds(rows.At(0, 0, kWidth - 2 * form::kMargin));
  how_.SetBounds(rows.At(1, 0, kWidth - 2 * form::kMargin));
  date_label_.SetBounds(rows.Label(2));
  date_.SetBounds(rows.Field(2));
  ok_.SetBounds(form::Button(kWidth, 1, button_top));
  cancel_.SetBounds(form::Button(kWidth, 0, button_top));
  for (viewkit::Control* control : std::initializer_list<viewkit::Control*>{
           &what_, &how_, &date_label_, &date_, &ok_, &cancel_}) {
    Add(*control);
  }
  SetSize(kWidth, button_top + form::kButtonHeight + form::kMargin);
  SetButtons(ok_, cancel_);
  ok_.Clicked.Add([this] {
    accepted_ = true;
    Unload();
  });
  cancel_.Clicked.Add([this] { Close(); });
}

}  // namespace desk::views
