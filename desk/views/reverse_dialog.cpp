#include "views/reverse_dialog.h"

namespace desk::views {

namespace form = viewkit::form;

ReverseDialog::ReverseDialog(const std::string& name, std::chrono::year_month_day date)
    : FormDialog("DeskReverse") {
  constexpr int kWidth = 6600;
  constexpr int kInside = kWidth - 2 * form::kMargin;
  const form::Rows rows{form::kMargin, form::kMargin, 1300, 1900};
  SetCaption("冲销凭证");
  PutLabel("冲销 " + name + "凭证。", rows.At(0, 0, kInside));
  PutLabel("生成一张新凭证，方向相同、金额为负数（红字）；原凭证不变。", rows.At(1, 0, kInside));
  PutLabel("冲销日期(&D)", rows.Label(2));
  date_.SetValue(date);
  Put(date_, rows.Field(2));
  PutButtons("冲销(&R)", kWidth, form::kMargin + 3 * form::kRowPitch + form::kMargin / 2);
}

void ReverseDialog::Accept() {
  accepted_ = true;
  Unload();
}

}  // namespace desk::views
