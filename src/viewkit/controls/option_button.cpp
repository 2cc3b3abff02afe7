#include "viewkit/controls/option_button.h"

#include <algorithm>

namespace tavrix::viewkit {

OptionButton::OptionButton(OptionGroup& group, std::string name, std::optional<int> index)
    : Captioned(std::move(name), index), group_(group) {
  group_.buttons_.push_back(this);
}

OptionButton::~OptionButton() {
  std::erase(group_.buttons_, this);
}

void OptionButton::SetValue(bool value) {
  if (value_ == value) return;
  if (value) {
    for (OptionButton* other : group_.buttons_) other->Show(false);
  }
  Show(value);
  if (value) Clicked.Raise();
}

bool OptionButton::StopsTab() const {
  const auto chosen = std::ranges::find(group_.buttons_, true, &OptionButton::Value);
  return this == (chosen == group_.buttons_.end() ? group_.buttons_.front() : *chosen);
}

void OptionButton::Click() {
  if (Enabled()) SetValue(true);
}

void OptionButton::Show(bool value) {
  if (value_ == value) return;
  value_ = value;
  Notify({Change::Kind::kContent});
}

}  // namespace tavrix::viewkit
