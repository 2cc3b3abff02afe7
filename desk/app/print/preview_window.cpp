#include "app/print/preview_window.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "app/print/printer.h"
#include "app/progress/long_work.h"
#include "host/non_copyable.h"
#include "host/report.h"
#include "host/utf.h"

namespace desk::app {
namespace {

using tavrix::host::Wide;
using tavrix::viewkit::Key;

constexpr wchar_t kPrinting[] = L"打印";
constexpr SIZE kFirst{980, 760};  // at 96 dots per inch
constexpr SIZE kMin{460, 320};

void TellFailure(HWND owner, const std::exception& error) {
  const std::wstring text = Wide(tavrix::host::ErrorText(error));
  MessageBoxW(owner, text.c_str(), kPrinting, MB_OK | MB_ICONWARNING);
}

/// The pages that the user has named are others on the paper that he has chosen then.
bool MayPrintOthers(HWND owner, int pages, const views::PrintLayout& layout) {
  const std::wstring text = L"在所选的纸张上共有 " + std::to_wstring(layout.Pages()) +
                            L" 页，而不是 " + std::to_wstring(pages) +
                            L" 页，页码与所见的不同。是否仍按所填的页码打印？";
  return MessageBoxW(owner, text.c_str(), kPrinting, MB_YESNO | MB_DEFBUTTON2 | MB_ICONQUESTION) ==
         IDYES;
}

/// False when nothing was printed.
bool Print(HWND owner, const views::PrintTable& table, const views::PrintSetup& setup,
           const PageMeasure& measure) {
  try {
    const int pages = views::PrintLayout(table, views::PaperOf(setup), measure).Pages();
    const auto order = AskPrinter(owner, setup, pages);
    if (!order) return false;
    const views::PrintLayout layout(table, order->paper, measure);
    if (order->chosen_pages && layout.Pages() != pages && !MayPrintOthers(owner, pages, layout)) {
      return false;
    }
    RunLong(owner, kPrinting, [&](const book::Progress& progress) {
      PrintPages(*order, table.title, layout, measure, progress);
    });
    return true;
  } catch (const book::WorkCancelled&) {
    MessageBoxW(owner, L"打印已取消。", kPrinting, MB_OK | MB_ICONINFORMATION);
  } catch (const std::exception& error) {
    TellFailure(owner, error);
  }
  return false;
}

/// All other windows of this thread that take input, while one of them alone shall.
class OthersDisabled : private tavrix::host::NonCopyable {
 public:
  explicit OthersDisabled(HWND window) : window_(window) {
    EnumThreadWindows(GetCurrentThreadId(), &Each, reinterpret_cast<LPARAM>(this));
    for (const HWND other : others_) EnableWindow(other, FALSE);
  }
  ~OthersDisabled() {
    for (const HWND other : others_) EnableWindow(other, TRUE);
  }

 private:
  static BOOL CALLBACK Each(HWND window, LPARAM self) {
    auto& disabled = *reinterpret_cast<OthersDisabled*>(self);
    const bool takes = IsWindowVisible(window) && IsWindowEnabled(window);
    if (takes && window != disabled.window_) disabled.others_.push_back(window);
    return TRUE;
  }
  HWND window_;
  std::vector<HWND> others_;
};

class PreviewWindow : public win32::Window {
 public:
  explicit PreviewWindow(PrintTask& task)
      : task_(task),
        preview_(task.choices, task.setup, measure_,
                 {.changed = [this] { OnChanged(); },
                  .print = [this] { OnPrint(); },
                  .close = [this] { closed_ = true; }}) {}

  void Open();
  /// Until the user has closed it; it is still there then.
  void Run();
  [[nodiscard]] const views::PrintSetup& Setup() const { return preview_.Setup(); }

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override;
  void OnChanged();
  void OnPrint();
  void Arrange();
  void SizeFirst();
  bool Translate(MSG& message);

  PrintTask& task_;
  PageMeasure measure_;
  views::PrintPreview preview_;
  std::shared_ptr<PagePane> page_;
  std::optional<win32::ViewWindow> controls_;
  bool closed_ = false;
};

void PreviewWindow::Open() {
  const std::wstring title = Wide(preview_.Title());
  Create(win32::ClassNamed(L"DeskPreview"), {.text = title.c_str(),
                                             .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                                             .parent = task_.owner});
  for (const UINT size : {UINT{ICON_SMALL}, UINT{ICON_BIG}}) {  // the owner's, which outlive this
    SendMessageW(Hwnd(), WM_SETICON, size, SendMessageW(task_.owner, WM_GETICON, size, 0));
  }
  SizeFirst();
  controls_.emplace(preview_.Controls(),
                    win32::ViewWindowOptions{.parent = Hwnd(), .font = DeskFont()});
  page_ = PagePane::Make(Hwnd(), task_.style, preview_, measure_,
                         {.go = [this](int page) { return preview_.GoTo(page); },
                          .leave = [this](bool backward) { controls_->FocusFirst(backward); }});
  page_->Show();
  Arrange();
  if (task_.place) {
    task_.place(Hwnd());
  } else {
    ShowWindow(Hwnd(), SW_SHOW);
  }
  SetFocus(page_->Hwnd());
}

void PreviewWindow::SizeFirst() {
  const RECT work = win32::WorkArea(task_.owner);
  const LONG width = std::min<LONG>(task_.style->scale.Design(kFirst.cx), work.right - work.left);
  const LONG height = std::min<LONG>(task_.style->scale.Design(kFirst.cy), work.bottom - work.top);
  SetWindowPos(Hwnd(), nullptr, (work.left + work.right - width) / 2,
               (work.top + work.bottom - height) / 2, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void PreviewWindow::Arrange() {
  if (!controls_ || !page_) return;
  RECT area{};
  GetClientRect(Hwnd(), &area);
  const int strip =
      controls_->ToPixels(preview_.Resize(controls_->ToTwips(static_cast<int>(area.right))));
  controls_->SetPlace({0, 0, area.right, strip});
  MoveWindow(page_->Hwnd(), 0, strip, static_cast<int>(area.right),
             std::max(0, static_cast<int>(area.bottom) - strip), TRUE);
}

void PreviewWindow::OnChanged() {
  if (!page_) return;
  SetWindowTextW(Hwnd(), Wide(preview_.Title()).c_str());
  page_->Show();
}

void PreviewWindow::OnPrint() {
  static_cast<void>(Print(Hwnd(), preview_.Table(), preview_.Setup(), measure_));
  if (Alive()) SetFocus(page_->Hwnd());
}

bool PreviewWindow::Translate(MSG& message) {
  if (!Alive() || (message.hwnd != Hwnd() && !IsChild(Hwnd(), message.hwnd))) return false;
  const bool in_page = message.hwnd == page_->Hwnd();
  if (!in_page && controls_->TranslateAccelerator(message)) return true;
  if (message.message == WM_SYSCHAR) {
    // Letters with Alt are the captions' mnemonics, also while the focus is in the page.
    MSG letter = message;
    letter.hwnd = controls_->Handle();
    return IsDialogMessageW(controls_->Handle(), &letter) != FALSE;
  }
  if (message.message != WM_KEYDOWN) return false;
  if (!in_page && message.wParam == VK_TAB) return SetFocus(page_->Hwnd()), true;
  if (!in_page && (message.wParam == VK_PRIOR || message.wParam == VK_NEXT)) {
    SendMessageW(page_->Hwnd(), WM_KEYDOWN, message.wParam, message.lParam);
    return true;
  }
  return preview_.UseKey(static_cast<Key>(message.wParam), win32::ModifiersOf(message.lParam));
}

void PreviewWindow::Run() {
  MSG message{};
  while (Alive() && !closed_) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    if (Translate(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

LRESULT PreviewWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) Arrange();
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {task_.style->scale.Design(kMin.cx),
                                                               task_.style->scale.Design(kMin.cy)};
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SETFOCUS:
      if (page_) SetFocus(page_->Hwnd());
      return 0;
    case WM_CLOSE:
      closed_ = true;
      return 0;
    case WM_DESTROY:
      if (task_.closing) task_.closing(Hwnd());
      return 0;
    default:
      return Window::OnMessage(message, wparam, lparam);
  }
}

void PreviewWindow::OnDestroyed() {
  controls_.reset();
  page_.reset();
}

}  // namespace

void ShowPreview(PrintTask& task) {
  const HWND focus = GetFocus();
  const auto window = std::make_shared<PreviewWindow>(task);
  window->Open();
  {
    const OthersDisabled others(window->Hwnd());
    window->Run();
  }
  task.setup = window->Setup();
  // The owner takes input again by now: else another program's window would be activated.
  window->Destroy();
  if (task.owner != nullptr) SetActiveWindow(task.owner);
  if (IsWindow(focus)) SetFocus(focus);
}

void PrintAtOnce(PrintTask& task) {
  const views::PrintTable table = task.choices.front().make();
  const PageMeasure measure;
  views::PrintSetup setup = task.setup;
  setup.landscape = views::WantsLandscape(table, setup, measure);
  // The system's dialog disables its owner alone, and another window could close the book.
  const OthersDisabled others(task.owner);
  static_cast<void>(Print(task.owner, table, setup, measure));
}

}  // namespace desk::app
