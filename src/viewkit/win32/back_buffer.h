#pragma once

#include "host/non_copyable.h"
#include "viewkit/win32/handles.h"

namespace tavrix::viewkit::win32 {

/// One bitmap in memory, grown to the largest area drawn so far and used by all windows of a view
/// in turn: what is drawn appears at once, so nothing flickers.
class BackBuffer : private host::NonCopyable {
 public:
  /// Draws `area` of a window: `draw` gets a device context with the window's own coordinates.
  template <class Draw>
  void Paint(HDC target, const RECT& area, Draw&& draw) {
    if (!Prepare(target, area)) return draw(target);
    {
      const SavedDc saved(dc_.Get());
      SetViewportOrgEx(dc_.Get(), -area.left, -area.top, nullptr);
      draw(dc_.Get());
    }
    BitBlt(target, area.left, area.top, area.right - area.left, area.bottom - area.top, dc_.Get(),
           0, 0, SRCCOPY);
  }

  ~BackBuffer() { Drop(); }

 private:
  /// False when there is no memory for the bitmap; then the window is drawn directly.
  bool Prepare(HDC target, const RECT& area);
  void Drop();

  MemoryDc dc_;
  HGDIOBJ previous_ = nullptr;
  Bitmap bitmap_;
  SIZE size_{};
};

}  // namespace tavrix::viewkit::win32
