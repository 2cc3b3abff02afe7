#include "viewkit/controls/text_box.h"

#include <utility>

namespace tavrix::viewkit {

void TextBox::SetText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  Notify({Change::Kind::kContent});
  Changed.Raise();
}

}  // namespace tavrix::viewkit
