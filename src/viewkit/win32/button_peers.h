#pragma once

#include <optional>

#include "viewkit/controls/check_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/frame_box.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/option_button.h"
#include "viewkit/win32/native_peer.h"

namespace tavrix::viewkit::win32 {

/// A line of text. Painted by itself: the system's label cuts a long one in ways of its own.
class LabelPeer : public CaptionPeer {
 public:
  LabelPeer(ViewContext& context, Label& label) : CaptionPeer(context, label), label_(label) {}
  void Open() override;
  [[nodiscard]] bool TabStop() const override { return false; }
  bool TakeFocus() override { return false; }

 protected:
  void ApplyBounds() override;
  [[nodiscard]] std::string TipText() const override { return TipOrCutText(); }
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  [[nodiscard]] COLORREF TextColor() const;
  void Paint(HDC dc) const;
  Label& label_;
};

class FramePeer : public CaptionPeer {
 public:
  FramePeer(ViewContext& context, FrameBox& frame) : CaptionPeer(context, frame) {}
  void Open() override;
  void OnAllOpen() override;
  [[nodiscard]] bool TabStop() const override { return false; }
  bool TakeFocus() override { return false; }

 protected:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
};

/// What the three kinds of buttons share: the native one reports a click, the model decides.
class ClickPeer : public CaptionPeer {
 public:
  using CaptionPeer::CaptionPeer;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  std::optional<LRESULT> OnNotify(UINT message, WPARAM wparam, LPARAM lparam) override;

 protected:
  virtual void OnClick() = 0;
  void SetCheck(int state) { Tell(BM_SETCHECK, static_cast<WPARAM>(state)); }
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  bool taking_focus_ = false;
};

class CommandButtonPeer : public ClickPeer {
 public:
  CommandButtonPeer(ViewContext& context, CommandButton& button)
      : ClickPeer(context, button), button_(button) {}
  void Open() override;
  [[nodiscard]] bool TabStop() const override { return button_.TabStop(); }
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;

 protected:
  void OnClick() override { button_.Click(); }
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  CommandButton& button_;
};

class CheckBoxPeer : public ClickPeer {
 public:
  CheckBoxPeer(ViewContext& context, CheckBox& box) : ClickPeer(context, box), box_(box) {}
  void Open() override;

 protected:
  void OnClick() override { box_.Click(); }
  void OnContent(const Change& change) override;

 private:
  CheckBox& box_;
};

class OptionButtonPeer : public ClickPeer {
 public:
  OptionButtonPeer(ViewContext& context, OptionButton& option)
      : ClickPeer(context, option), option_(option) {}
  void Open() override;
  [[nodiscard]] bool TabStop() const override { return option_.StopsTab(); }
  /// The user reached it by an arrow key.
  void Choose() { OnClick(); }

 protected:
  void OnClick() override { option_.Click(); }
  void OnContent(const Change& change) override;

 private:
  OptionButton& option_;
};

}  // namespace tavrix::viewkit::win32
