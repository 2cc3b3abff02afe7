#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "app/print/page_painter.h"
#include "book/session/progress.h"
#include "views/print_preview.h"

namespace desk::app {

struct DcDeleter {
  void operator()(HDC dc) const noexcept { DeleteDC(dc); }
};
using PrinterDc = std::unique_ptr<std::remove_pointer_t<HDC>, DcDeleter>;

/// A printer that the user has chosen, and which pages.
struct PrintOrder {
  PrinterDc dc;
  int first = 0;              ///< from 0
  int last = 0;               ///< the last one itself; beyond the last page: all that there are
  bool chosen_pages = false;  ///< the user has named them
  int copies = 1;
  views::Paper paper = {};
};

/// The paper of the user's printer, nothing where there is none.
[[nodiscard]] std::optional<views::PrintSetup> PrinterPaper();

/// Asks for a printer, with `setup` proposed. Nothing when the user gives up; `host::HostError`
/// when there is no printer, or it does not answer.
[[nodiscard]] std::optional<PrintOrder> AskPrinter(HWND owner, const views::PrintSetup& setup,
                                                   int pages);

/// Prints a layout that was made for the order's paper. `book::WorkCancelled` when the user has
/// cancelled, `host::HostError` when the printer refuses; nothing is printed then, as far as the
/// system has it still in its hands.
void PrintPages(const PrintOrder& order, const std::string& title, const views::PrintLayout& layout,
                const PageMeasure& measure, const book::Progress& progress);

}  // namespace desk::app
