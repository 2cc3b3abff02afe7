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
class LabelPeer : public PeerOf<Label, CaptionPeer> {
 public:
  using PeerOf::PeerOf;
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
};

class FramePeer : public PeerOf<FrameBox, CaptionPeer> {
 public:
  using PeerOf::PeerOf;
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

class CommandButtonPeer : public PeerOf<CommandButton, ClickPeer> {
 public:
  using PeerOf::PeerOf;
  void Open() override;
  [[nodiscard]] bool TabStop() const override { return Model().TabStop(); }
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;

 protected:
  void OnClick() override { Model().Click(); }
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
};

class CheckBoxPeer : public PeerOf<CheckBox, ClickPeer> {
 public:
  using PeerOf::PeerOf;
  void Open() override;

 protected:
  void OnClick() override { Model().Click(); }
  void OnContent(const Change& change) override;
};

class OptionButtonPeer : public PeerOf<OptionButton, ClickPeer> {
 public:
  using PeerOf::PeerOf;
  void Open() override;
  [[nodiscard]] bool TabStop() const override { return Model().StopsTab(); }
  /// The user reached it by an arrow key.
  void Choose() { OnClick(); }

 protected:
  void OnClick() override { Model().Click(); }
  void OnContent(const Change& change) override;
};

}  // namespace tavrix::viewkit::win32
