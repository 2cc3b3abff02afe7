#pragma once

#include <windows.h>

#include "app/frame/style.h"
#include "viewkit/win32/window.h"

namespace desk::app {

/// A part of the frame that paints itself whole, with its children on top: its background is never
/// erased.
class Pane : public tavrix::viewkit::win32::Window {
 protected:
  /// Places the children, also before all of them are there. Painting follows.
  virtual void Arrange() {}
  /// `area` is the client area.
  virtual void Paint(HDC dc, const RECT& area) = 0;
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

  [[nodiscard]] RECT Client() const;
};

/// Where the cross that closes a pane stands and is clicked: at the right end of a strip at the
/// pane's top, of this height in pixels.
[[nodiscard]] RECT CrossArea(const RECT& client, int height, const Style& style);
void PaintCross(HDC dc, const RECT& cross, const Style& style);

}  // namespace desk::app
