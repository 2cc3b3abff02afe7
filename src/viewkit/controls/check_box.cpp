#include "viewkit/controls/check_box.h"

namespace tavrix::viewkit {

void CheckBox::SetValue(int value) {
  if (value == value_ || value < kUnchecked || value > kGrayed) return;
  value_ = value;
  Notify({Change::Kind::kContent});
  Clicked.Raise();
}

void CheckBox::Click() {
  if (Enabled()) SetValue(value_ == kUnchecked ? kChecked : kUnchecked);
}

}  // namespace tavrix::viewkit
