#include "viewkit/controls/accessible_tabs.h"

namespace tavrix::viewkit {

AccessibleRole AccessibleTabs::Role(AccessibleId id) const {
  return id.item == 0 ? AccessibleRole::kTabList : AccessibleRole::kTab;
}

bool AccessibleTabs::Exists(AccessibleId id) const {
  return id.part == 0 && id.item >= 0 && id.item <= strip_.Tabs();
}

std::string AccessibleTabs::Name(AccessibleId id) const {
  return id.item == 0 ? std::string() : strip_.TabCaption(id.item - 1);
}

AccessibleStates AccessibleTabs::States(AccessibleId id) const {
  const bool tab = id.item != 0;
  const bool current = tab && id == Current();
  return {.focusable = true,
          .focused = strip_.Focused() && id == Current(),
          .selectable = tab,
          .selected = current,
          .unavailable = !strip_.Enabled()};
}

int AccessibleTabs::Children(AccessibleId id) const {
  return id.item == 0 ? strip_.Tabs() : 0;
}

std::vector<AccessibleId> AccessibleTabs::Selected() const {
  if (strip_.CurrTab() < 0) return {};
  return {Current()};
}

AccessibleAction AccessibleTabs::Action(AccessibleId id) const {
  return id.item == 0 || !strip_.Enabled() ? AccessibleAction::kNone : AccessibleAction::kSwitch;
}

bool AccessibleTabs::Select(AccessibleId id, AccessibleSelect how) {
  if (id.item == 0 || how != AccessibleSelect::kOnly || !strip_.Enabled()) return false;
  strip_.SetCurrTab(id.item - 1);
  return true;
}

}  // namespace tavrix::viewkit
