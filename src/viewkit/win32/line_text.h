#pragma once

#include <windows.h>

#include <string>

namespace tavrix::viewkit::win32 {

/// `text` as one line of at most `width` pixels in the font of `dc`. One that is too long keeps as
/// much of its beginning as fits, and ends in exactly one "…".
[[nodiscard]] std::wstring CutToFit(HDC dc, std::wstring text, int width);

/// Draws a text into `place`, cut to fit: `text` is what was drawn afterwards, in the memory that
/// it has. `flags` as of DrawText. Ampersands are drawn as such.
void DrawLine(HDC dc, std::wstring& text, RECT place, UINT flags);

}  // namespace tavrix::viewkit::win32
