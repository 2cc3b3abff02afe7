#pragma once

#include "viewkit/accessible.h"
#include "viewkit/controls/tab_strip.h"

namespace tavrix::viewkit {

/// A row of tabs. The item of a tab is its index plus 1.
class AccessibleTabs : public Accessible {
 public:
  explicit AccessibleTabs(TabStrip& strip) : strip_(strip) {}

  [[nodiscard]] AccessibleRole Role(AccessibleId id) const override;
  [[nodiscard]] bool Exists(AccessibleId id) const override;
  [[nodiscard]] std::string Name(AccessibleId id) const override;
  [[nodiscard]] AccessibleStates States(AccessibleId id) const override;
  [[nodiscard]] int Children(AccessibleId id) const override;
  [[nodiscard]] AccessibleId Child(AccessibleId, int position) const override {
    return {position + 1, 0};
  }
  [[nodiscard]] int Position(AccessibleId id) const override { return id.item - 1; }
  [[nodiscard]] AccessibleId Current() const override { return {strip_.CurrTab() + 1, 0}; }
  [[nodiscard]] std::vector<AccessibleId> Selected() const override;
  [[nodiscard]] AccessibleAction Action(AccessibleId id) const override;
  void Act(AccessibleId id) override { Select(id, AccessibleSelect::kOnly); }
  bool Select(AccessibleId id, AccessibleSelect how) override;

 private:
  TabStrip& strip_;
};

}  // namespace tavrix::viewkit
