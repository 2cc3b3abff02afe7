#pragma once

#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <string>
#include <utility>

#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/date_picker.h"
#include "viewkit/controls/list_view.h"
#include "viewkit/controls/search_box.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/win32/native_peer.h"

/// The system's boxes and lists, in which a user types and chooses.
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

template <class Box>
class EditPeerOf : public PeerOf<Box, EditPeer> {
 public:
  using PeerOf<Box, EditPeer>::PeerOf;

 protected:
  [[nodiscard]] const std::string& ModelText() const override { return this->Model().Text(); }
  void SetModelText(std::string text) override { this->Model().SetText(std::move(text)); }
};

class TextBoxPeer : public EditPeerOf<TextBox> {
 public:
  using EditPeerOf::EditPeerOf;
  void Open() override;

 protected:
  [[nodiscard]] DWORD EditStyle() const override { return Model().AlignsRight() ? ES_RIGHT : 0U; }
};

class SearchBoxPeer : public EditPeerOf<SearchBox> {
 public:
  using EditPeerOf::EditPeerOf;
  void Open() override;
};

class ComboBoxPeer : public PeerOf<ComboBox, NativePeer> {
 public:
  using PeerOf::PeerOf;
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

  bool editing_ = false;  // the native box shows already what the model takes over
};

/// The system's box for a day, shown as year-month-day.
class DatePeer : public PeerOf<DTPicker, NativePeer> {
 public:
  using PeerOf::PeerOf;
  void Open() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  std::optional<LRESULT> OnNotify(UINT message, WPARAM wparam, LPARAM lparam) override;

 protected:
  void ApplyBounds() override;
  void OnContent(const Change& change) override;
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  TypedDay typed_;
  bool taking_ = false;  // the native box shows already what the model takes over
};

/// The system's list view: rows of the model's columns, or of one column without a heading.
class ListPeer : public PeerOf<ListView, NativePeer> {
 public:
  using PeerOf::PeerOf;
  void Open() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  std::optional<LRESULT> OnNotify(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnFontChanged() override;

 protected:
  void ApplyBounds() override;
  void OnContent(const Change& change) override;

 private:
  void MakeColumns();
  void SizeColumns();
  void ShowItems();
  void ShowSelection();
  void TakeState(const NMLISTVIEW& change);

  bool taking_ = false;   // the native list shows already what the model takes over
  bool showing_ = false;  // the model's items and their states are being written
};

}  // namespace tavrix::viewkit::win32
