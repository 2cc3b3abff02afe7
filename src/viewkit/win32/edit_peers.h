#pragma once

#include <optional>
#include <string>
#include <utility>

#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/search_box.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/win32/native_peer.h"

namespace tavrix::viewkit::win32 {

/// What the two kinds of text boxes share: the system's control for one line.
class EditPeer : public NativePeer {
 public:
  using NativePeer::NativePeer;
  void Open() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  std::optional<LRESULT> OnNotify(UINT message, WPARAM wparam, LPARAM lparam) override;

 protected:
  /// Styles of the native box beyond those of all boxes.
  [[nodiscard]] virtual DWORD EditStyle() const { return 0; }
  [[nodiscard]] virtual const std::string& ModelText() const = 0;
  virtual void SetModelText(std::string text) = 0;
  void ApplyBounds() override;
  void OnContent(const Change& change) override;
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  [[nodiscard]] std::string TipText() const override { return TipOrCutText(); }

 private:
  bool showing_ = false;  // the model's text is being written: no edit of the user
};

class TextBoxPeer : public EditPeer {
 public:
  TextBoxPeer(ViewContext& context, TextBox& box) : EditPeer(context, box), box_(box) {}
  void Open() override;

 protected:
  [[nodiscard]] DWORD EditStyle() const override { return box_.AlignsRight() ? ES_RIGHT : 0U; }
  [[nodiscard]] const std::string& ModelText() const override { return box_.Text(); }
  void SetModelText(std::string text) override { box_.SetText(std::move(text)); }

 private:
  TextBox& box_;
};

class SearchBoxPeer : public EditPeer {
 public:
  SearchBoxPeer(ViewContext& context, SearchBox& box) : EditPeer(context, box), box_(box) {}
  void Open() override;

 protected:
  [[nodiscard]] const std::string& ModelText() const override { return box_.Text(); }
  void SetModelText(std::string text) override { box_.SetText(std::move(text)); }

 private:
  SearchBox& box_;
};

class ComboBoxPeer : public NativePeer {
 public:
  ComboBoxPeer(ViewContext& context, ComboBox& box) : NativePeer(context, box), box_(box) {}
  void Open() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  std::optional<LRESULT> OnNotify(UINT message, WPARAM wparam, LPARAM lparam) override;
  bool TakeFocus() override;
  [[nodiscard]] bool IsDropped() const { return Tell(CB_GETDROPPEDSTATE) != 0; }

 protected:
  void OnContent(const Change& change) override;
  void ApplyBounds() override;
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  void ShowItems();
  void ShowSelection();

  ComboBox& box_;
  bool editing_ = false;  // the native box shows already what the model takes over
};

}  // namespace tavrix::viewkit::win32
