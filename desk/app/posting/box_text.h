#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

/// What the boxes of the posting pane hold and show.
namespace desk::app {

/// What is typed, without blanks around it.
[[nodiscard]] std::string TrimmedText(HWND box);

/// An amount on one side of an entry; nothing for none.
[[nodiscard]] std::wstring SideText(std::int64_t amount);

/// Focus to the box, its text chosen.
void FocusBox(HWND box);

}  // namespace desk::app
