#include "app/frame/frame_window.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <utility>

#include "app/frame/popup_menu.h"

namespace desk::app {
namespace {

constexpr wchar_t kProgramName[] = L"会计科目";
constexpr int kMinViewHeight = 100;
constexpr int kMinViewWidth = 360;
// The first window, and the least one, where the screen is not smaller still.
struct DesignSize {
  int cx;
  int cy;
};
constexpr DesignSize kFirstDesign{1060, 720};
constexpr DesignSize kMinDesign{480, 360};
constexpr UINT kShowNotice = WM_APP + 1;

/// Cuts a strip of `height` off the top of `rest`.
RECT TakeTop(RECT& rest, int height) {
  RECT taken = rest;
  taken.bottom = std::min(rest.bottom, rest.top + height);
  rest.top = taken.bottom;
  return taken;
}

RECT TakeBottom(RECT& rest, int height) {
  RECT taken = rest;
  taken.top = std::max(rest.top, rest.bottom - height);
  rest.bottom = taken.top;
  return taken;
}

RECT TakeRight(RECT& rest, int width) {
  RECT taken = rest;
  taken.left = std::max(rest.left, rest.right - width);
  rest.right = taken.left;
  return taken;
}

POINT LeastSize(HWND window) {
  const int dpi = static_cast<int>(GetDpiForWindow(window));
  const RECT work = win32::WorkArea(window);
  return {std::min<LONG>(MulDiv(kMinDesign.cx, dpi, 96), work.right - work.left),
          std::min<LONG>(MulDiv(kMinDesign.cy, dpi, 96), work.bottom - work.top)};
}

void Put(HWND window, const RECT& place) {
  SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

std::shared_ptr<FrameWindow> FrameWindow::Make(FrameOwner& owner) {
  auto frame = std::make_shared<FrameWindow>();
  frame->owner_ = &owner;
  frame->frame_keys_ = MakeAccelerators(KeyScope::kFrame);
  frame->view_keys_ = MakeAccelerators(KeyScope::kView);
  frame->Create(win32::ClassNamed(L"DeskFrame"),
                {.text = kProgramName, .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN});
  frame->CreateParts();
  frame->SizeFirst();
  return frame;
}

void FrameWindow::CreateParts() {
  style_ = std::make_shared<const Style>(static_cast<int>(GetDpiForWindow(Hwnd())));
  big_icon_ = MakeIcon(Icon::kLedger, GetSystemMetrics(SM_CXICON));
  small_icon_ = MakeIcon(Icon::kLedger, GetSystemMetrics(SM_CXSMICON));
  SendMessageW(Hwnd(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(big_icon_.get()));
  SendMessageW(Hwnd(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(small_icon_.get()));
  tool_bar_.emplace(Hwnd(), style_);
  CreateBars();
  area_ = ViewArea::Make(Hwnd(), style_,
                         {.resized = [this](const RECT& area) { owner_->OnViewArea(area); },
                          .focused = [this] { owner_->OnFocusView(); }});
  reports_ = ReportPane::Make(Hwnd(), style_, [this] { Arrange(); });
  status_.emplace(Hwnd(), style_);
  SetRecent({});
  Arrange();
}

/// As large as its parts want it at this resolution, and in the middle of a screen that is not much
/// larger.
void FrameWindow::SizeFirst() {
  const RECT work = win32::WorkArea(Hwnd());
  const SIZE room{work.right - work.left, work.bottom - work.top};
  const SIZE size{std::min<LONG>(style_->scale.Design(kFirstDesign.cx), room.cx),
                  std::min<LONG>(style_->scale.Design(kFirstDesign.cy), room.cy)};
  SetWindowPos(Hwnd(), nullptr, work.left + (room.cx - size.cx) / 2,
               work.top + (room.cy - size.cy) / 2, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

void FrameWindow::CreateBars() {
  find_ = SearchStrip::Make(Hwnd(), style_,
                            {.icon = Icon::kFind,
                             .label = L"查找",
                             .hint = L"科目编码或名称",
                             .apply = L"查找",
                             .second = L"下一个",
                             .on_apply = [this](const std::wstring& text) { owner_->OnFind(text); },
                             .on_second = [this](const std::wstring&) { owner_->OnFindNext(); },
                             .on_close = [this] { ShowBar(*find_, false); }});
  filter_ =
      SearchStrip::Make(Hwnd(), style_,
                        {.icon = Icon::kFilter,
                         .label = L"筛选",
                         .hint = L"科目编码或名称",
                         .apply = L"筛选",
                         .second = L"全部",
                         .on_apply = [this](const std::wstring& text) { owner_->OnFilter(text); },
                         .on_second =
                             [this](const std::wstring&) {
                               filter_->SetText({});
                               owner_->OnFilter({});
                             },
                         .on_close =
                             [this] {
                               filter_->SetText({});
                               owner_->OnFilter({});
                               ShowBar(*filter_, false);
                             }});
}

void FrameWindow::SetTitle(const std::wstring& book) {
  const std::wstring title = book.empty() ? kProgramName : book + L" - " + kProgramName;
  SetWindowTextW(Hwnd(), title.c_str());
}

void FrameWindow::SetRecent(const std::vector<std::wstring>& recent) {
  const Menu previous(GetMenu(Hwnd()));
  SetMenu(Hwnd(), MakeMenuBar(recent).release());  // the window owns it from here on
  DrawMenuBar(Hwnd());
}

void FrameWindow::SetBookTexts(const std::wstring& company, const std::wstring& file) {
  status_->SetBook(company, file);
}

void FrameWindow::AddReport(const Report& report) {
  reports_->Add(report);
  if (report_heard_) report_heard_(report);
  // A disabled frame has a dialog in front of it, and nobody sees the list behind that. The dialog
  // may be in the middle of moving its focus: no window comes or goes before it is done.
  if (IsWindowEnabled(Hwnd())) return;
  waiting_ = report;
  PostMessageW(Hwnd(), kShowNotice, 0, 0);
}

void FrameWindow::ShowNotice() {
  if (!waiting_ || IsWindowEnabled(Hwnd())) return waiting_.reset();
  const Report report = *std::exchange(waiting_, std::nullopt);
  HWND dialog = GetLastActivePopup(Hwnd());
  if (notice_ && notice_->Alive() && dialog == notice_->Hwnd()) dialog = notice_->Dialog();
  if (dialog == Hwnd()) return;
  if (notice_ && notice_->Alive() && notice_->Dialog() == dialog) return notice_->Change(report);
  if (notice_) notice_->Destroy();
  notice_ = Notice::Show(dialog, report);
}

void FrameWindow::ShowBar(SearchStrip& bar, bool shown) {
  if (bar.Shown() != shown) {
    bar.SetShown(shown);
    Arrange();
  }
  if (shown) return bar.FocusBox();
  owner_->OnFocusView();
}

void FrameWindow::ResetBars() {
  for (const auto& bar : {find_, filter_}) {
    bar->SetText({});
    bar->SetShown(false);
  }
  Arrange();
}

void FrameWindow::Dock(HWND pane, int design_height) {
  docked_ = pane;
  docked_design_height_ = design_height;
  Arrange();
}

void FrameWindow::DockBeside(HWND pane, int design_width, int min_width) {
  beside_ = pane;
  beside_design_width_ = design_width;
  beside_min_width_ = min_width;
  Arrange();
}

void FrameWindow::Arrange() {
  if (!status_) return;
  RECT rest{};
  GetClientRect(Hwnd(), &rest);
  status_->Arrange();
  TakeBottom(rest, status_->Height());
  RECT tools = TakeTop(rest, tool_bar_->Height() + style_->scale.Design(6));
  InflateRect(&tools, -style_->scale.Design(4), -style_->scale.Design(3));
  Put(tool_bar_->Handle(), tools);
  tool_bar_->Fit(static_cast<int>(tools.right - tools.left));
  for (const auto& bar : {find_, filter_}) {
    if (bar->Shown()) Put(bar->Hwnd(), TakeTop(rest, bar->Height()));
  }
  // The panes give way to the list, which always shows some rows.
  const auto room = [&] {
    const int height = static_cast<int>(rest.bottom - rest.top);
    return std::max(0, height - style_->scale.Design(kMinViewHeight));
  };
  const int docked = docked_ == nullptr ? 0 : style_->scale.Design(docked_design_height_);
  const int heading = style_->strip_height;
  Put(reports_->Hwnd(),
      TakeBottom(rest, reports_->WantedHeight(std::max(heading, room() - docked))));
  if (docked_ != nullptr) Put(docked_, TakeBottom(rest, std::min(docked, room())));
  if (beside_ != nullptr) {
    const int width = static_cast<int>(rest.right - rest.left);
    const int most = width - style_->scale.Design(kMinViewWidth);
    const int wanted = std::min(style_->scale.Design(beside_design_width_), most);
    Put(beside_, TakeRight(rest, std::max(wanted, style_->scale.Design(beside_min_width_))));
  }
  Put(area_->Hwnd(), rest);
}

void FrameWindow::FocusBeside(bool backward) {
  const HWND reports = reports_->Open() ? reports_->Hwnd() : nullptr;
  const HWND find = find_->Shown() ? find_->Hwnd() : nullptr;
  const HWND filter = filter_->Shown() ? filter_->Hwnd() : nullptr;
  std::array<HWND, 5> parts = {beside_, docked_, reports, find, filter};
  if (backward) std::ranges::reverse(parts);
  const auto next = std::ranges::find_if(parts, [](HWND part) { return part != nullptr; });
  if (next != parts.end()) SetFocus(*next);
}

bool FrameWindow::Translate(MSG& message, bool in_view) {
  if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
  if (AsksForMenu(message)) return OpenMenu(message), true;
  if (in_view && TranslateAcceleratorW(Hwnd(), view_keys_.get(), &message)) return true;
  if (TranslateAcceleratorW(Hwnd(), frame_keys_.get(), &message)) return true;
  for (const HWND pane : {find_->Hwnd(), filter_->Hwnd(), docked_}) {
    if (pane != nullptr && IsChild(pane, message.hwnd)) return IsDialogMessageW(pane, &message);
  }
  return false;
}

void FrameWindow::OnDpi(const RECT& wanted) {
  style_ = std::make_shared<const Style>(static_cast<int>(GetDpiForWindow(Hwnd())));
  tool_bar_->SetStyle(style_);
  find_->SetStyle(style_);
  filter_->SetStyle(style_);
  area_->SetStyle(style_);
  reports_->SetStyle(style_);
  status_->SetStyle(style_);
  Put(Hwnd(), wanted);
  Arrange();
  owner_->OnStyle();
}

/// The pictures are drawn in the user's colours, and only this window is told that they have
/// changed.
void FrameWindow::OnColors() {
  for (const HWND part : {tool_bar_->Handle(), status_->Handle(), reports_->Hwnd(), docked_}) {
    if (part != nullptr) SendMessageW(part, WM_SYSCOLORCHANGE, 0, 0);
  }
  tool_bar_->SetStyle(style_);
  RedrawWindow(Hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

void FrameWindow::OnActivation(bool active) {
  if (!active) {
    const HWND focus = GetFocus();
    if (IsChild(Hwnd(), focus)) last_focus_ = focus;
  }
  owner_->OnActivate(active);
}

void FrameWindow::RestoreFocus() {
  if (IsChild(Hwnd(), last_focus_) && IsWindowVisible(last_focus_)) {
    SetFocus(last_focus_);
    return;
  }
  owner_->OnFocusView();
}

LRESULT FrameWindow::OnNotification(const NMHDR& header) {
  LRESULT result = 0;
  if (tool_bar_ && tool_bar_->OnNotify(header, result)) return result;
  return 0;
}

LRESULT FrameWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) Arrange();
      return 0;
    case WM_ERASEBKGND: {
      RECT area{};
      GetClientRect(Hwnd(), &area);
      FillBox(reinterpret_cast<HDC>(wparam), area, FaceColor());
      return 1;
    }
    case WM_GETMINMAXINFO: {
      auto& limits = *reinterpret_cast<MINMAXINFO*>(lparam);
      limits.ptMinTrackSize = LeastSize(Hwnd());
      return 0;
    }
    case WM_CONTEXTMENU:
      OnContextMenu(lparam);
      return 0;
    case WM_COMMAND:
      if (LOWORD(wparam) == IdOf(Command::kMore)) return ShowOthers(), 0;
      if (LOWORD(wparam) >= IdOf(Command::kNewBook)) {
        owner_->OnCommand(static_cast<Command>(LOWORD(wparam)));
      }
      return 0;
    case WM_NOTIFY:
      return OnNotification(*reinterpret_cast<const NMHDR*>(lparam));
    case WM_INITMENUPOPUP:
      OnMenuOpening(reinterpret_cast<HMENU>(wparam));
      return 0;
    case WM_ACTIVATE:
      OnActivation(LOWORD(wparam) != WA_INACTIVE);
      break;
    case WM_SETFOCUS:
      RestoreFocus();
      return 0;
    case kShowNotice:
      ShowNotice();
      return 0;
    case WM_DPICHANGED:
      OnDpi(*reinterpret_cast<const RECT*>(lparam));
      return 0;
    case WM_SYSCOLORCHANGE:
      OnColors();
      return 0;
    case WM_CLOSE:
      if (owner_->OnClosing()) Destroy();
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      break;
  }
  return Window::OnMessage(message, wparam, lparam);
}

}  // namespace desk::app
