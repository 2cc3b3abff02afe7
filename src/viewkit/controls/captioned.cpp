#include "viewkit/controls/captioned.h"

namespace tavrix::viewkit {

void Captioned::SetCaption(std::string caption) {
  if (caption_ == caption) return;
  caption_ = std::move(caption);
  Notify({Change::Kind::kContent});
}

}  // namespace tavrix::viewkit
