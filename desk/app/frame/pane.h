#pragma once

#include <windows.h>

#include "app/frame/style.h"
#include "viewkit/win32/window.h"

namespace desk::app {

/// An edge by which a pane can be made wider or higher.
enum class PaneEdge { kNone, kLeft, kTop };

/// A part of the frame that paints itself whole, with its children on top: its background is never
/// erased.
class Pane : public tavrix::viewkit::win32::Window {
 protected:
  /// Places the children, also before all of them are there. Painting follows.
  virtual void Arrange() {}
  /// `area` is the client area.
  virtual void Paint(HDC dc, const RECT& area) = 0;
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

  /// The edge that can be dragged at present.
  [[nodiscard]] virtual PaneEdge Edge() const { return PaneEdge::kNone; }
  /// The user drags the edge: to this width or height of the pane, at 96 dots per inch.
  virtual void OnEdgeDragged(int /*design_size*/) {}
  /// For a click: true when the edge is there, and follows the mouse from now on.
  [[nodiscard]] bool StartDrag(POINT at);

  [[nodiscard]] RECT Client() const;

 private:
  [[nodiscard]] bool OnEdge(POINT at) const;
  void OnMouseMove(POINT at);

  bool dragging_ = false;
};

/// Where the cross that closes a pane stands and is clicked: at the right end of a strip at the
/// pane's top, of this height in pixels.
[[nodiscard]] RECT CrossArea(const RECT& client, int height, const Style& style);
void PaintCross(HDC dc, const RECT& cross, const Style& style);

}  // namespace desk::app
