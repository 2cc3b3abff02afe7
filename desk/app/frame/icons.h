#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>

#include "viewkit/win32/handles.h"
#include "views/icon.h"

/// The desk's own pictures, drawn when they are needed, for the resolution they are shown at.
namespace desk::app {

using views::Icon;
using views::kIconCount;

/// One picture, `pixels` wide and high, with straight alpha.
[[nodiscard]] tavrix::viewkit::win32::Bitmap DrawIcon(Icon icon, int pixels, bool grey);

struct ImageListDeleter {
  void operator()(HIMAGELIST list) const noexcept { ImageList_Destroy(list); }
};
using ImageList = std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, ImageListDeleter>;

/// All pictures; the index of each is its number.
[[nodiscard]] ImageList MakeImageList(int pixels, bool grey);

struct IconDeleter {
  void operator()(HICON icon) const noexcept { DestroyIcon(icon); }
};
using OwnedIcon = std::unique_ptr<std::remove_pointer_t<HICON>, IconDeleter>;

[[nodiscard]] OwnedIcon MakeIcon(Icon icon, int pixels);

/// Paints a picture into `dc` at (x, y).
void PaintIcon(HDC dc, Icon icon, int x, int y, int pixels);

}  // namespace desk::app
