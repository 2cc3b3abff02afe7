#pragma once

#include <windows.h>

#include <memory>

#include "viewkit/grid/contrast.h"
#include "viewkit/win32/fonts.h"
#include "viewkit/win32/scale.h"

/// Fonts, measures and colours that all parts of the frame share.
namespace desk::app {

namespace win32 = tavrix::viewkit::win32;

/// The look of the frame at one resolution.
struct Style {
  explicit Style(int dpi);
  win32::Scale scale;
  win32::FontSet fonts;
  int icon_pixels;        ///< pictures of the tool bar
  int small_icon_pixels;  ///< pictures in strips and lists
  int strip_height;       ///< a strip with one line of text or one box

  [[nodiscard]] HFONT Font() const { return fonts.Get(false); }
  [[nodiscard]] HFONT BoldFont() const { return fonts.Get(true); }
};
using SharedStyle = std::shared_ptr<const Style>;

/// The font of the frame and of the views in it: the system's, but never below 9 points, where
/// Chinese characters lose their strokes.
[[nodiscard]] win32::FontSpec DeskFont();

/// The program's own colours, as its pictures have them. Texts take them through `Readable`.
inline constexpr COLORREF kLinkColor = RGB(40, 110, 190);
inline constexpr COLORREF kErrorColor = RGB(205, 66, 56);
inline constexpr COLORREF kWarningColor = RGB(226, 150, 30);
inline constexpr COLORREF kRefusedColor = RGB(190, 40, 34);
inline constexpr COLORREF kDoneColor = RGB(34, 120, 72);

/// The user's own colours: strips and panes, texts on them, and texts that stand back.
[[nodiscard]] COLORREF FaceColor();
[[nodiscard]] COLORREF TextColor();
[[nodiscard]] COLORREF FaintColor();
/// A thin line between two parts of the frame.
[[nodiscard]] COLORREF LineColor();
/// Texts on a strip or pane: one that can be clicked, one that says that something was refused, and
/// one that it has been done.
[[nodiscard]] COLORREF LinkColor();
[[nodiscard]] COLORREF RefusedColor();
[[nodiscard]] COLORREF DoneColor();

/// `wanted` where it has at least that contrast to `ground`, else `system`: users may have set dark
/// colours, or colours of high contrast.
[[nodiscard]] COLORREF Readable(COLORREF wanted, COLORREF ground, COLORREF system,
                                double least = tavrix::viewkit::kLegible);

/// Gives all windows inside `parent` the font of the frame's texts.
void SetFontsInside(HWND parent, const Style& style);

void FillBox(HDC dc, const RECT& area, COLORREF color);

/// The background of a strip or pane that a line parts from what stands above it.
void FillPane(HDC dc, const RECT& area, const Style& style);

/// One line of text, centred vertically, cut with an ellipsis; in the device context's font.
void DrawLine(HDC dc, const wchar_t* text, const RECT& area, COLORREF color, UINT flags = DT_LEFT);

}  // namespace desk::app
