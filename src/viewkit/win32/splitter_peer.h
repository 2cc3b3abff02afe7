#pragma once

#include "viewkit/controls/splitter.h"
#include "viewkit/win32/control_peer.h"

namespace tavrix::viewkit::win32 {

/// The window of a splitter: a bar of the view's background that follows the pointer.
class SplitterPeer : public ControlPeer {
 public:
  SplitterPeer(ViewContext& context, Splitter& splitter)
      : ControlPeer(context, splitter),
        splitter_(splitter),
        accessible_(AccessibleRole::kSeparator, splitter.AccessibleName()) {}

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

  Splitter& splitter_;
  AccessibleWindow accessible_;
  int grip_ = -1;  // where the pointer holds the bar, from its left edge; -1 when it does not
};

}  // namespace tavrix::viewkit::win32
