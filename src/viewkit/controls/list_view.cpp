#include "viewkit/controls/list_view.h"

#include <algorithm>
#include <utility>

#include "viewkit/ports.h"

namespace tavrix::viewkit {

void ListView::SetColumnWidth(std::size_t column, int width) {
  if (std::exchange(columns_.at(column).width, width) != width) Notify({Change::Kind::kColumns});
}

void ListView::SetItems(const std::vector<Texts>& items) {
  items_.clear();
  for (const Texts& texts : items) items_.push_back({texts});
  current_ = 0;
  top_ = items_.empty() ? 0 : 1;
  Notify({Change::Kind::kContent});
}

int ListView::AddItem(std::string text) {
  items_.push_back({{std::move(text)}});
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

int ListView::FirstSelected() const {
  const auto found = std::ranges::find(items_, true, &Item::selected);
  return found == items_.end() ? 0 : static_cast<int>(found - items_.begin()) + 1;
}

int ListView::Room() const {
  return std::max(GetBounds().height / PlainTextMeasure().LineHeight(), 1);
}

void ListView::EnsureVisible(int index) {
  (void)At(index);
  top_ = std::clamp(top_, std::max(index - Room() + 1, 1), index);
  // How much there is room for a window knows better.
  Notify({.kind = Change::Kind::kScroll, .first = index, .last = index});
}

}  // namespace tavrix::viewkit
