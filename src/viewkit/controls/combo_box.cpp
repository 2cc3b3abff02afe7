#include "viewkit/controls/combo_box.h"

#include <algorithm>
#include <utility>

namespace tavrix::viewkit {

ComboBox::ComboBox(Style style, std::string name, std::optional<int> index)
    : Control(std::move(name), index), style_(style) {}

void ComboBox::AddItem(std::string text, std::int32_t data) {
  items_.push_back({std::move(text), data});
  Notify({Change::Kind::kContent});
}

void ComboBox::Clear() {
  if (items_.empty()) return;
  items_.clear();
  Notify({Change::Kind::kContent});
  const std::string kept = style_ == Style::kEditable ? text_ : std::string();
  Become(-1, kept);
}

int ComboBox::FindItem(std::string_view text) const {
  const auto found =
      std::find_if(items_.begin(), items_.end(), [text](const Item& i) { return i.text == text; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void ComboBox::SetListIndex(int item) {
  if (item < -1 || item >= ListCount()) return;
  Become(item, item < 0 ? std::string() : List(item));
}

void ComboBox::SetText(std::string_view text) {
  const int item = FindItem(text);
  if (item < 0 && style_ == Style::kList && !text.empty()) return;
  Become(item, text);
}

void ComboBox::Become(int index, std::string_view text) {
  if (index == index_ && text == text_) return;
  index_ = index;
  text_ = text;
  Notify({Change::Kind::kSelection, index, index});
  Changed.Raise();
}

}  // namespace tavrix::viewkit
