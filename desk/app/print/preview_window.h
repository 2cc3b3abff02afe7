#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/frame/style.h"
#include "app/print/page_painter.h"
#include "app/print/page_pane.h"
#include "viewkit/win32/view_window.h"
#include "viewkit/win32/window.h"
#include "views/print_preview.h"

namespace desk::app {

/// What is printed: at least one choice. The paper is what was used last, or the printer's; it is
/// changed to what the user has chosen.
struct PrintTask {
  HWND owner = nullptr;
  SharedStyle style;
  std::vector<views::PrintChoice> choices;
  views::PrintSetup setup = {};
  std::function<void(HWND)> place = {};    ///< puts the preview where it belongs; shows it
  std::function<void(HWND)> closing = {};  ///< its place can still be asked for
};

/// Shows the pages of `task` until the user closes the window; meanwhile no other window of this
/// thread takes input. Throws what making the table throws.
void ShowPreview(PrintTask& task);

/// Asks for a printer and prints the first choice of `task`. Tells of failures itself, but throws
/// what making the table throws.
void PrintAtOnce(PrintTask& task);

}  // namespace desk::app
