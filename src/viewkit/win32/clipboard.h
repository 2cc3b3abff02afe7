#pragma once

#include <windows.h>

#include <string_view>

namespace tavrix::viewkit::win32 {

/// Puts a UTF-8 text on the clipboard. False when another program holds the clipboard for long.
bool CopyText(HWND owner, std::string_view text);

}  // namespace tavrix::viewkit::win32
