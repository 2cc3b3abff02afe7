#include "viewkit/controls/list_view.h"

#include <algorithm>
#include <utility>

#include "viewkit/ports.h"

namespace tavrix::viewkit {

int ListView::AddItem(std::string text) {
  items_.push_back({std::move(text)});
  if (top_ == 0) top_ = 1;
  Notify({Change::Kind::kContent});
  return Count();
}

void ListView::Clear() {
  items_.clear();
  current_ = 0;
  top_ = 0;
  Notify({Change::Kind::kContent});
}

void ListView::SetSelectedItem(int index) {
  (void)At(index);
  if (current_ == index) return;
  current_ = index;
  Notify({Change::Kind::kSelection});
  ItemClick.Raise();
}

void ListView::SetSelected(int index, bool selected) {
  if (Selected(index) == selected) return;
  items_[static_cast<std::size_t>(index) - 1].selected = selected;
  Notify({Change::Kind::kSelection});
}

int ListView::Room() const {
  return std::max(GetBounds().height / PlainTextMeasure().LineHeight(), 1);
}

void ListView::EnsureVisible(int index) {
  (void)At(index);
  const int top = std::clamp(top_, std::max(index - Room() + 1, 1), index);
  if (top == top_) return;
  top_ = top;
  Notify({Change::Kind::kScroll});
}

}  // namespace tavrix::viewkit
