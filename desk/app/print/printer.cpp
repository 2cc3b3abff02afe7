#include "app/print/printer.h"

#include <cderr.h>
#include <commdlg.h>

#include <algorithm>
#include <array>
#include <utility>

#include "host/error.h"
#include "host/non_copyable.h"
#include "host/utf.h"
#include "viewkit/ports.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
using tavrix::viewkit::kTwipsPerInch;

struct GlobalDeleter {
  void operator()(void* memory) const noexcept { GlobalFree(memory); }
};
using Global = std::unique_ptr<void, GlobalDeleter>;

constexpr char kNoPrinter[] = "系统中没有打印机。请先安装打印机，例如“Microsoft Print to PDF”。";
constexpr char kNotReady[] = "打印机没有响应";

/// The dialog's memory and context belong to whoever called it.
struct DialogAnswer {
  Global mode;
  Global names;
  PrinterDc dc;
};

DialogAnswer AnswerOf(const PRINTDLGW& dialog) {
  return {Global(dialog.hDevMode), Global(dialog.hDevNames), PrinterDc(dialog.hDC)};
}

PRINTDLGW NewDialog(HWND owner, DWORD flags) {
  PRINTDLGW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = owner;
  dialog.Flags = flags;
  return dialog;
}

std::optional<DialogAnswer> DefaultPrinter(DWORD flags) {
  PRINTDLGW dialog = NewDialog(nullptr, PD_RETURNDEFAULT | flags);
  if (!PrintDlgW(&dialog)) return std::nullopt;
  return AnswerOf(dialog);
}

/// Papers that printers know by number.
struct KnownPaper {
  int width;
  short number;
};
constexpr std::array kKnownPapers = {KnownPaper{11906, DMPAPER_A4}, KnownPaper{16838, DMPAPER_A3},
                                     KnownPaper{8391, DMPAPER_A5}, KnownPaper{10319, DMPAPER_B5},
                                     KnownPaper{12240, DMPAPER_LETTER}};

void Propose(DEVMODEW& mode, const views::PrintSetup& setup) {
  mode.dmFields |= DM_ORIENTATION;
  mode.dmOrientation = setup.landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
  const auto* const known = std::ranges::find(kKnownPapers, setup.width, &KnownPaper::width);
  if (known == kKnownPapers.end()) return;
  mode.dmFields |= DM_PAPERSIZE;
  mode.dmFields &= ~static_cast<DWORD>(DM_PAPERLENGTH | DM_PAPERWIDTH);
  mode.dmPaperSize = known->number;
}

int Caps(HDC dc, int index) {
  return GetDeviceCaps(dc, index);
}

int ToTwips(int pixels, int per_inch) {
  return MulDiv(pixels, kTwipsPerInch, std::max(1, per_inch));
}

/// Its margins are those behind which the printer cannot reach.
views::Paper PaperOfPrinter(HDC dc) {
  const int dpi_x = Caps(dc, LOGPIXELSX);
  const int dpi_y = Caps(dc, LOGPIXELSY);
  views::Paper paper;
  paper.width = ToTwips(Caps(dc, PHYSICALWIDTH), dpi_x);
  paper.height = ToTwips(Caps(dc, PHYSICALHEIGHT), dpi_y);
  paper.left = ToTwips(Caps(dc, PHYSICALOFFSETX), dpi_x);
  paper.top = ToTwips(Caps(dc, PHYSICALOFFSETY), dpi_y);
  paper.right = std::max(0, paper.width - paper.left - ToTwips(Caps(dc, HORZRES), dpi_x));
  paper.bottom = std::max(0, paper.height - paper.top - ToTwips(Caps(dc, VERTRES), dpi_y));
  return paper;
}

void Require(int result) {
  if (result > 0) return;
  throw host::HostError(GetLastError() == ERROR_CANCELLED ? "打印已取消" : "打印机拒绝了打印任务");
}

/// Ends the document, or takes it back.
class Document : private host::NonCopyable {
 public:
  Document(HDC dc, const std::wstring& name) : dc_(dc) {
    DOCINFOW info{};
    info.cbSize = sizeof info;
    info.lpszDocName = name.c_str();
    Require(StartDocW(dc_, &info));
  }
  ~Document() {
    if (open_) AbortDoc(dc_);
  }
  void End() {
    Require(EndDoc(dc_));
    open_ = false;
  }

 private:
  HDC dc_;
  bool open_ = true;
};

}  // namespace

std::optional<views::PrintSetup> PrinterPaper() {
  const auto printer = DefaultPrinter(PD_RETURNIC);
  if (!printer || !printer->dc) return std::nullopt;
  const views::Paper paper = PaperOfPrinter(printer->dc.get());
  if (paper.width <= 0 || paper.height <= 0) return std::nullopt;
  return views::PrintSetup{.width = std::min(paper.width, paper.height),
                           .height = std::max(paper.width, paper.height)};
}

std::optional<PrintOrder> AskPrinter(HWND owner, const views::PrintSetup& setup, int pages) {
  auto proposed = DefaultPrinter(0);
  if (!proposed) throw host::HostError(kNoPrinter);
  PRINTDLGW dialog = NewDialog(owner, PD_RETURNDC | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE);
  if (auto* mode = static_cast<DEVMODEW*>(GlobalLock(proposed->mode.get()))) {
    Propose(*mode, setup);
    GlobalUnlock(proposed->mode.get());
  }
  dialog.hDevMode = proposed->mode.release();
  dialog.hDevNames = proposed->names.release();
  dialog.nMinPage = 1;
  dialog.nMaxPage = static_cast<WORD>(std::min(pages, 0xFFFF));
  dialog.nFromPage = 1;
  dialog.nToPage = dialog.nMaxPage;
  dialog.nCopies = 1;
  const bool accepted = PrintDlgW(&dialog) != FALSE;
  const DWORD error = accepted ? 0 : CommDlgExtendedError();
  DialogAnswer answer = AnswerOf(dialog);
  if (error == PDERR_NODEFAULTPRN || error == PDERR_NODEVICES) throw host::HostError(kNoPrinter);
  if (error != 0 || (accepted && !answer.dc)) throw host::HostError(kNotReady);
  if (!accepted) return std::nullopt;
  PrintOrder order{.dc = std::move(answer.dc), .last = 0xFFFF, .copies = dialog.nCopies};
  if ((dialog.Flags & PD_PAGENUMS) != 0) {
    order.chosen_pages = true;
    order.first = dialog.nFromPage - 1;
    order.last = dialog.nToPage - 1;
  }
  order.paper = views::PaperForPrinter(setup, PaperOfPrinter(order.dc.get()));
  return order;
}

void PrintPages(const PrintOrder& order, const std::string& title, const views::PrintLayout& layout,
                const PageMeasure& measure, const book::Progress& progress) {
  HDC dc = order.dc.get();
  const SIZE per_inch{Caps(dc, LOGPIXELSX), Caps(dc, LOGPIXELSY)};
  const POINT origin{-Caps(dc, PHYSICALOFFSETX), -Caps(dc, PHYSICALOFFSETY)};
  PagePainter painter(measure);
  const int end = std::min(order.last + 1, layout.Pages());
  const int all = std::max(0, end - order.first) * order.copies;
  int done = 0;
  Document document(dc, tavrix::host::Wide(title));
  for (int copy = 0; copy < order.copies; ++copy) {
    for (int page = std::max(0, order.first); page < end; ++page) {
      book::Tell(progress, {.step = "正在打印" + title, .done = done++, .all = all});
      Require(StartPage(dc));
      painter.Paint(dc, origin, per_inch, layout.Page(page));
      Require(EndPage(dc));
    }
  }
  document.End();
}

}  // namespace desk::app
