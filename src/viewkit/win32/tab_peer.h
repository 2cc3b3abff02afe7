#pragma once

#include <optional>
#include <vector>

#include "viewkit/controls/accessible_tabs.h"
#include "viewkit/controls/tab_strip.h"
#include "viewkit/win32/control_peer.h"
#include "viewkit/win32/tool_tip.h"

namespace tavrix::viewkit::win32 {

/// The window of a row of tabs. Drawn by itself: the system's tab control has no background colour.
class TabPeer : public ControlPeer {
 public:
  TabPeer(ViewContext& context, TabStrip& strip) : ControlPeer(context, strip), strip_(strip) {}

  void Open() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  bool UseViewKey(Key key, Modifiers modifiers) override;
  void OnFontChanged() override;
  [[nodiscard]] Accessible* Inside() override { return &accessible_; }
  [[nodiscard]] RECT PlaceOf(AccessibleId id) const override;
  [[nodiscard]] AccessibleId IdAt(POINT point) const override { return {TabAt(point) + 1, 0}; }

 protected:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnContent(const Change& change) override;
  void OnDestroyed() override;

 private:
  /// The tabs' places from left to right; narrowed alike when the window is too narrow for them.
  [[nodiscard]] std::vector<RECT> Places() const;
  [[nodiscard]] int TabAt(POINT point) const;
  void Paint(HDC dc) const;
  void PaintTab(HDC dc, const RECT& place, int tab) const;
  void OnMouseMove(POINT point);
  void SetHot(int tab);
  void InvalidateTab(int tab);
  void AnnounceFocus() const;

  TabStrip& strip_;
  AccessibleTabs accessible_{strip_};
  std::optional<ToolTip> tip_;  // while the window is there
  int hot_ = -1;
  int shown_current_ = -1;
};

}  // namespace tavrix::viewkit::win32
