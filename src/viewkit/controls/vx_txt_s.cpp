#include "viewkit/controls/vx_txt_s.h"

#include <utility>

namespace tavrix::viewkit {

void vxTxt_S::SetValue(std::string value) {
  if (value_ == value) return;
  value_ = std::move(value);
  text_ = value_;
  Notify({Change::Kind::kContent});
  Changed.Raise();
}

void vxTxt_S::SetText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  Notify({Change::Kind::kContent});
  Changed.Raise();
}

}  // namespace tavrix::viewkit
