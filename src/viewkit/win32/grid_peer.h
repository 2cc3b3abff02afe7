#pragma once

#include <compare>
#include <optional>
#include <string>
#include <vector>

#include "viewkit/grid/accessible_grid.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/win32/control_peer.h"
#include "viewkit/win32/grid_layout.h"
#include "viewkit/win32/tool_tip.h"

namespace tavrix::viewkit::win32 {

/// The window of a grid. It paints the rows that are seen, repaints what has changed and hands the
/// user's input to the model; it keeps no copy of the model's state but what tells it that.
class GridPeer : public PeerOf<FlexGrid, ControlPeer> {
 public:
  using PeerOf::PeerOf;
  void Open() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  void OnFontChanged() override;
  void Settle() override;
  [[nodiscard]] Accessible* Inside() override { return &accessible_; }
  [[nodiscard]] RECT PlaceOf(AccessibleId id) const override;
  [[nodiscard]] AccessibleId IdAt(POINT point) const override;

 protected:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override;
  void OnContent(const Change& change) override;
  void ApplyBounds() override;

 private:
  // What the window shows of the selection: for each row seen, whether it is selected, current.
  struct RowMark {
    int row;
    bool selected;
    bool current;
    friend auto operator<=>(const RowMark&, const RowMark&) = default;
  };
  // What the held mouse button does.
  enum class Hold { kNothing, kSelecting, kColumn, kRow };

  [[nodiscard]] SIZE ClientSize() const;
  [[nodiscard]] GridLayout Layout() const;

  // --- showing (grid_peer.cpp)
  void Paint(HDC dc, const RECT& area);
  void OnPaint();
  void Arrange();
  void SetBars();
  void SetBar(int bar, int count, int page, int position);
  [[nodiscard]] int TopPosition() const;
  [[nodiscard]] int RowsOnLastPage() const;
  [[nodiscard]] bool Seen(int col) const;
  [[nodiscard]] std::vector<int> ScrolledColumns() const;
  [[nodiscard]] int ColumnsOnLastPage(const std::vector<int>& columns) const;
  void FollowScroll();
  [[nodiscard]] int PixelsBetween(int upper, int lower, int limit) const;
  void InvalidateRows(int first, int last);
  void InvalidateSelection();
  [[nodiscard]] std::vector<RowMark> RowMarks() const;
  [[nodiscard]] bool HasMergedColumns() const;

  // --- assistive programs (grid_peer_accessible.cpp)
  void Listen();
  void Announce();
  void AnnounceFocus() const;
  void AnnounceRow(DWORD event, int row) const;

  // --- the mouse (grid_peer_mouse.cpp)
  LRESULT OnMouse(UINT message, WPARAM wparam, LPARAM lparam);
  void OnButtonDown(POINT point, bool double_click);
  void OnPressed(const Hit& hit, bool double_click);
  void OnRightDown(POINT point);
  void OnMouseMove(POINT point);
  void OnButtonUp();
  void BeginHold(Hold hold, int index);
  void Resize(POINT point);
  void Drag(POINT point);
  [[nodiscard]] int DragTarget(POINT point) const;
  bool OnSetCursor() const;
  void UpdateTip(POINT point);
  [[nodiscard]] bool IsClipped(const GridLayout& layout, const RECT& cell, int row, int col) const;

  // --- keys and scroll bars (grid_peer_input.cpp)
  LRESULT OnInput(UINT message, WPARAM wparam, LPARAM lparam);
  void OnKeyDown(Key key, Modifiers modifiers);
  void OnChar(wchar_t unit);
  void OnVerticalScroll(int request);
  void OnHorizontalScroll(int request);
  void OnWheel(int delta);
  void OnSideWheel(int delta);
  void ScrollBy(int rows);
  void ScrollTo(int position);
  [[nodiscard]] int TrackedPosition(int bar) const;

  AccessibleGrid accessible_{Model()};
  int collapse_listener_ = 0;
  std::optional<ToolTip> tip_;  // while the window is there
  bool arranging_ = false;
  bool unsettled_ = false;  // changed as a whole, invalidated and not arranged yet
  int shown_top_ = -1;
  int shown_left_ = -1;
  std::vector<RowMark> marks_;
  Hold hold_ = Hold::kNothing;
  int held_index_ = -1;
  POINT last_point_{-1, -1};
  bool swallow_char_ = false;
  wchar_t high_surrogate_ = 0;
  int wheel_rest_ = 0;
  int side_wheel_rest_ = 0;
};

}  // namespace tavrix::viewkit::win32
