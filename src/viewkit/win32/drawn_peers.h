#pragma once

#include <optional>
#include <vector>

#include "viewkit/controls/accessible_tabs.h"
#include "viewkit/controls/splitter.h"
#include "viewkit/controls/tab_strip.h"
#include "viewkit/win32/control_peer.h"
#include "viewkit/win32/tool_tip.h"

/// Controls that are drawn by themselves.
namespace tavrix::viewkit::win32 {

/// The window of a row of tabs: the system's tab control has no background colour.
class TabPeer : public PeerOf<TabStrip, ControlPeer> {
 public:
  using PeerOf::PeerOf;
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

  AccessibleTabs accessible_{Model()};
  std::optional<ToolTip> tip_;  // while the window is there
  int hot_ = -1;
  int shown_current_ = -1;
};

/// The window of a splitter: a bar of the view's background that follows the pointer.
class SplitterPeer : public PeerOf<Splitter, ControlPeer> {
 public:
  using PeerOf::PeerOf;
  void Open() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  void OnFontChanged() override { ApplyBounds(); }
  [[nodiscard]] Accessible* Inside() override { return &accessible_; }

 protected:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnContent(const Change&) override {}

 private:
  void Paint(HDC dc) const;
  void MoveBy(int pixels);

  AccessibleWindow accessible_{AccessibleRole::kSeparator, Model().AccessibleName()};
  int grip_ = -1;  // where the pointer holds the bar, from its left edge; -1 when it does not
};

}  // namespace tavrix::viewkit::win32
