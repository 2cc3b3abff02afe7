#include "viewkit/controls/tab_strip.h"

#include <algorithm>
#include <utility>

namespace tavrix::viewkit {

TabStrip::TabStrip(std::string name, std::optional<int> index) : Control(std::move(name), index) {}

void TabStrip::AddTab(std::string key, std::string caption) {
  tabs_.push_back({std::move(key), std::move(caption)});
  if (current_ < 0) current_ = 0;
  Notify({Change::Kind::kContent});
}

void TabStrip::SetCurrTab(int tab) {
  if (tab == current_ || tab < 0 || tab >= Tabs()) return;
  current_ = tab;
  Notify({Change::Kind::kSelection, tab, tab});
  TabActivated.Raise(TabKey(tab));
}

bool TabStrip::Activate(std::string_view key) {
  const auto found =
      std::find_if(tabs_.begin(), tabs_.end(), [key](const Tab& tab) { return tab.key == key; });
  if (found == tabs_.end()) return false;
  SetCurrTab(static_cast<int>(found - tabs_.begin()));
  return true;
}

void TabStrip::GoRound(int step) {
  if (Tabs() > 0) SetCurrTab((current_ + step + Tabs()) % Tabs());
}

bool TabStrip::HandleKey(Key key, Modifiers modifiers) {
  if (modifiers.alt || !Enabled()) return false;
  if (modifiers.control) {
    if (key == Key::kTab) GoRound(modifiers.shift ? -1 : 1);
    return key == Key::kTab;
  }
  switch (key) {
    case Key::kLeft:
      SetCurrTab(current_ - 1);
      return true;
    case Key::kRight:
      SetCurrTab(current_ + 1);
      return true;
    case Key::kHome:
      SetCurrTab(0);
      return true;
    case Key::kEnd:
      SetCurrTab(Tabs() - 1);
      return true;
    default:
      return false;
  }
}

void TabStrip::SetBackColor(Color color) {
  if (back_color_ == color) return;
  back_color_ = color;
  Notify({Change::Kind::kState});
}

}  // namespace tavrix::viewkit
