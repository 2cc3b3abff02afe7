#pragma once

#include <windows.h>

#include "viewkit/color.h"

namespace tavrix::viewkit::win32 {

/// A colour as the system draws it; `fallback` stands in for `color::kDefault`.
[[nodiscard]] COLORREF ToColorRef(Color color, Color fallback = color::kWindow);

/// `wanted` for a text on `ground`, or a colour of the system's that can be read there; for the
/// system's grey one between its text and the ground.
[[nodiscard]] COLORREF TextOn(COLORREF ground, COLORREF wanted);

/// A colour between two: `share` per cent of `over`, the rest of `under`.
[[nodiscard]] COLORREF Blend(COLORREF over, COLORREF under, int share);

/// Fills without needing a brush of its own.
void Fill(HDC dc, const RECT& area, COLORREF color);

}  // namespace tavrix::viewkit::win32
