#pragma once

#include <windows.h>

#include <commctrl.h>

#include "viewkit/controls/list_view.h"
#include "viewkit/win32/native_peer.h"

namespace tavrix::viewkit::win32 {

/// The system's list view: rows of the model's columns, or of one column without a heading.
class ListPeer : public NativePeer {
 public:
  ListPeer(ViewContext& context, ListView& list) : NativePeer(context, list), list_(list) {}
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

  ListView& list_;
  bool taking_ = false;   // the native list shows already what the model takes over
  bool showing_ = false;  // the model's items and their states are being written
};

}  // namespace tavrix::viewkit::win32
