#include "viewkit/win32/input_peers.h"

#include <string>

#include "host/flag_scope.h"
#include "host/utf.h"

namespace tavrix::viewkit::win32 {
namespace {

/// The structures of the system's list have no room for a text that is only read.
wchar_t* Writable(const std::wstring& text) {
  return const_cast<wchar_t*>(text.c_str());
}

UINT NativeState(const ListView& list, int index) {
  return (list.Selected(index) ? UINT{LVIS_SELECTED} : 0U) |
         (list.SelectedItem() == index ? UINT{LVIS_FOCUSED} : 0U);
}

}  // namespace

void ListPeer::Open() {
  const DWORD head = Model().Columns().empty() ? LVS_NOCOLUMNHEADER : LVS_NOSORTHEADER;
  const DWORD several = Model().MultiSelect() ? 0U : LVS_SINGLESEL;
  OpenNative({.class_name = WC_LISTVIEWW,
              .style = WS_BORDER | LVS_REPORT | LVS_SHOWSELALWAYS | head | several});
  ListView_SetExtendedListViewStyle(Hwnd(), LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  MakeColumns();
  ShowItems();
}

void ListPeer::MakeColumns() {
  const std::size_t count = Model().Columns().empty() ? 1 : Model().Columns().size();
  for (std::size_t i = 0; i < count; ++i) {
    LVCOLUMNW column{};
    std::wstring heading;
    column.mask = LVCF_TEXT | LVCF_FMT | LVCF_SUBITEM;
    column.fmt = LVCFMT_LEFT;
    if (!Model().Columns().empty()) {
      heading = host::Wide(Model().Columns()[i].heading);
      if (Model().Columns()[i].aligns_right) column.fmt = LVCFMT_RIGHT;
    }
    column.pszText = Writable(heading);
    column.iSubItem = static_cast<int>(i);
    ListView_InsertColumn(Hwnd(), static_cast<int>(i), &column);
  }
  SizeColumns();
}

void ListPeer::SizeColumns() {
  if (Model().Columns().empty()) {
    ListView_SetColumnWidth(Hwnd(), 0, LVSCW_AUTOSIZE_USEHEADER);
    return;
  }
  for (std::size_t i = 0; i < Model().Columns().size(); ++i) {
    ListView_SetColumnWidth(Hwnd(), static_cast<int>(i),
                            Context().scale.ToPixels(Model().Columns()[i].width));
  }
}

bool ListPeer::WantsKey(Key key, Modifiers modifiers) const {
  return !modifiers.alt && key >= Key::kPageUp && key <= Key::kDown;
}

void ListPeer::OnFontChanged() {
  NativePeer::OnFontChanged();
  if (Alive()) SizeColumns();
}

void ListPeer::ApplyBounds() {
  NativePeer::ApplyBounds();
  if (Alive() && Model().Columns().empty()) SizeColumns();
}

void ListPeer::OnContent(const Change& change) {
  if (taking_) return;
  switch (change.kind) {
    case Change::Kind::kColumns:
      return SizeColumns();
    case Change::Kind::kSelection:
      return ShowSelection();
    case Change::Kind::kScroll:
      ListView_EnsureVisible(Hwnd(), change.first - 1, FALSE);
      return Model().ScrolledTo(ListView_GetTopIndex(Hwnd()) + 1);
    default:
      return ShowItems();
  }
}

void ListPeer::ShowItems() {
  const host::FlagScope showing(showing_);
  ListView_DeleteAllItems(Hwnd());
  for (int index = 1; index <= Model().Count(); ++index) {
    const ListView::Texts& texts = Model().ItemTexts(index);
    for (std::size_t column = 0; column < texts.size(); ++column) {
      const std::wstring text = host::Wide(texts[column]);
      LVITEMW item{};
      item.mask = LVIF_TEXT;
      item.iItem = index - 1;
      item.iSubItem = static_cast<int>(column);
      item.pszText = Writable(text);
      Tell(column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
  }
  ShowSelection();
}

void ListPeer::ShowSelection() {
  const host::FlagScope showing(showing_);
  for (int index = 1; index <= Model().Count(); ++index) {
    ListView_SetItemState(Hwnd(), index - 1, NativeState(Model(), index),
                          LVIS_SELECTED | LVIS_FOCUSED);
  }
}

void ListPeer::TakeState(const NMLISTVIEW& change) {
  if (change.iItem < 0 || change.iItem >= Model().Count()) return;
  const host::FlagScope taking(taking_);
  const int index = change.iItem + 1;
  Model().SetSelected(index, (change.uNewState & LVIS_SELECTED) != 0);
  if (Alive() && (change.uNewState & LVIS_FOCUSED) != 0) Model().SetSelectedItem(index);
}

std::optional<LRESULT> ListPeer::OnNotify(UINT message, WPARAM, LPARAM lparam) {
  if (message != WM_NOTIFY) return {};
  const auto& header = *reinterpret_cast<const NMHDR*>(lparam);
  if (header.hwndFrom != Hwnd()) return {};
  switch (header.code) {
    case LVN_ITEMCHANGED: {
      const auto& change = *reinterpret_cast<const NMLISTVIEW*>(lparam);
      if (!showing_ && (change.uChanged & LVIF_STATE) != 0) TakeState(change);
      return 0;
    }
    case LVN_ENDSCROLL:
      Model().ScrolledTo(Model().Count() == 0 ? 0 : ListView_GetTopIndex(Hwnd()) + 1);
      return 0;
    case NM_DBLCLK:
      Model().DoubleClick.Raise();
      return 0;
    default:
      return {};
  }
}

}  // namespace tavrix::viewkit::win32
