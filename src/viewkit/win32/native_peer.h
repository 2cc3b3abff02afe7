#pragma once

#include <optional>
#include <string>

#include "viewkit/controls/captioned.h"
#include "viewkit/win32/control_peer.h"
#include "viewkit/win32/tool_tip.h"

namespace tavrix::viewkit::win32 {

/// A control that the system draws.
class NativePeer : public ControlPeer {
 public:
  NativePeer(ViewContext& context, Control& control)
      : ControlPeer(context, control), named_(AccessibleRole::kSystem, control.AccessibleName()) {}
  void OnFontChanged() override;
  [[nodiscard]] Accessible* Inside() override {
    return Model().AccessibleName().empty() ? nullptr : &named_;
  }
  [[nodiscard]] bool WantsKey(Key, Modifiers) const override { return false; }

 protected:
  struct Plan {
    const wchar_t* class_name = L"";
    DWORD style = 0;
    DWORD extended_style = 0;
  };
  void OpenNative(const Plan& plan);
  /// The text of the native control.
  [[nodiscard]] std::string ShownText() const;
  /// Leaves a text alone that stands already, and with it the caret.
  void ShowText(const std::string& text);
  /// The model's place, or its middle where it is higher than a line of text needs: the system's
  /// boxes for one line write at their upper edge, however high they are.
  [[nodiscard]] RECT PlaceOfLine() const;
  [[nodiscard]] virtual std::string TipText() const { return Model().ToolTipText(); }
  /// The model's tip, or the text itself where the window is too narrow for it.
  [[nodiscard]] std::string TipOrCutText() const;
  LRESULT Tell(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override;

 private:
  /// The focus is here or in a window inside, as in that of a box with a list.
  [[nodiscard]] bool HasFocus() const;

  AccessibleWindow named_;
  std::optional<ToolTip> tip_;  // while the window is there
};

/// A native control that shows a caption.
class CaptionPeer : public PeerOf<Captioned, NativePeer> {
 public:
  using PeerOf::PeerOf;

 protected:
  void OnContent(const Change&) override { ShowText(Model().Caption()); }
};

}  // namespace tavrix::viewkit::win32
