#include "viewkit/controls/label.h"

namespace tavrix::viewkit {

void Label::SetForeColor(Color color) {
  if (fore_color_ == color) return;
  fore_color_ = color;
  Notify({Change::Kind::kState});
}

void Label::SetBackColor(Color color) {
  if (back_color_ == color) return;
  back_color_ = color;
  Notify({Change::Kind::kState});
}

}  // namespace tavrix::viewkit
