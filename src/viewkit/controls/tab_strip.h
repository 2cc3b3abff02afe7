#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "viewkit/color.h"
#include "viewkit/control.h"
#include "viewkit/indexing.h"
#include "viewkit/input.h"

namespace tavrix::viewkit {

/// A row of tabs (`vxVSTabCtl`). It shows which page is active; pages are the view's business.
class TabStrip : public Control {
 public:
  explicit TabStrip(std::string name, std::optional<int> index = {});

  [[nodiscard]] std::string TypeName() const override { return "vxVSTabCtl"; }

  /// The first tab added becomes the active one, without an event.
  void AddTab(std::string key, std::string caption);
  [[nodiscard]] int Tabs() const { return CountOf(tabs_); }
  /// Index of the active tab, from 0; -1 without tabs.
  [[nodiscard]] int CurrTab() const { return current_; }
  /// Activates a tab. Raises `TabActivated` when it was not active; an index outside is ignored.
  void SetCurrTab(int tab);
  /// As `SetCurrTab` for the tab with this key; false when there is none.
  bool Activate(std::string_view key);
  [[nodiscard]] const std::string& TabKey(int tab) const {
    return tabs_.at(static_cast<std::size_t>(tab)).key;
  }
  [[nodiscard]] const std::string& TabCaption(int tab) const {
    return tabs_.at(static_cast<std::size_t>(tab)).caption;
  }

  [[nodiscard]] Color BackColor() const { return back_color_; }
  void SetBackColor(Color color);

  /// The user's key: Left, Right, Home and End go from tab to tab; Ctrl+Tab goes round, with Shift
  /// backwards, wherever in the view the focus is. True when the key was used.
  bool HandleKey(Key key, Modifiers modifiers = {});

  Event<const std::string&> TabActivated;  ///< with the key of the tab that is now active

 private:
  struct Tab {
    std::string key;
    std::string caption;
  };
  void GoRound(int step);

  std::vector<Tab> tabs_;
  int current_ = -1;
  Color back_color_ = color::kButtonFace;
};

}  // namespace tavrix::viewkit
