#include "app/posting/posting_pane.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "app/frame/icons.h"
#include "app/frame/popup_menu.h"
#include "app/frame/today.h"
#include "host/error.h"
#include "host/utf.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
namespace viewkit = tavrix::viewkit;
using host::Narrow;
using host::Wide;

constexpr UINT kAccountLeft = WM_APP + 1;

HWND WindowOf(const viewkit::Control& control) {
  return reinterpret_cast<HWND>(control.WindowHandle());
}

}  // namespace

std::shared_ptr<PostingPane> PostingPane::Make(HWND parent, SharedStyle style, PostingPlan plan) {
  auto pane = std::make_shared<PostingPane>();
  pane->style_ = std::move(style);
  pane->plan_ = std::move(plan);
  pane->Create(win32::ClassNamed(L"DeskPosting", CS_HREDRAW | CS_VREDRAW),
               {.text = L"凭证录入",
                .style = WS_CHILD | WS_CLIPCHILDREN,
                .extended_style = WS_EX_CONTROLPARENT,
                .parent = parent});
  pane->MakeView();
  return pane;
}

void PostingPane::MakeView() {
  user_ = win32::WindowsUser({.owner = [this] { return GetAncestor(Hwnd(), GA_ROOT); }});
  views::AccountChooser& chooser = *this;
  view_ = std::make_unique<views::VoucherView>(
      views::VoucherView::Plan{.session = plan_.session,
                               .selected_code = plan_.selected_code,
                               .post = plan_.post,
                               // The focus is still on its way.
                               .account_left = [this] { PostMessageW(Hwnd(), kAccountLeft, 0, 0); },
                               .today = Today()},
      chooser, user_);
  view_->SetMeasure(style_->fonts);
  OnColors();
  controls_.emplace(view_->Controls(),
                    win32::ViewWindowOptions{
                        .parent = Hwnd(),
                        .place = ViewArea(),
                        .font = DeskFont(),
                        .resized = [this](int width, int height) { view_->Resize(width, height); },
                        .focus_moved = [this] { ShowDefaultButton(); }});
  ShowDefaultButton();
}

void PostingPane::OnDestroyed() {
  drop_down_.reset();
  controls_.reset();
}

void PostingPane::SetStyle(SharedStyle style) {
  // The view measures in the old fonts until it has the new ones.
  view_->SetMeasure(style->fonts);
  style_ = std::move(style);
  if (drop_down_) drop_down_->SetStyle(style_);
  Arrange();
}

RECT PostingPane::ViewArea() const {
  RECT area = Client();
  area.top = std::min<LONG>(style_->strip_height, area.bottom);
  return area;
}

void PostingPane::Arrange() {
  if (controls_) controls_->SetPlace(ViewArea());
}

void PostingPane::OnColors() {
  view_->SetAnswerColors(RefusedColor(), DoneColor());
}

RECT PostingPane::CloseButton() const {
  return CrossArea(Client(), style_->strip_height, *style_);
}

void PostingPane::Paint(HDC dc, const RECT& area) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  FillPane(dc, area, *style_);
  const int icon = style_->small_icon_pixels;
  PaintIcon(dc, Icon::kVoucher, design(8), (style_->strip_height - icon) / 2, icon);
  const RECT close = CloseButton();
  PaintCross(dc, close, *style_);
  const win32::Selected font(dc, style_->BoldFont());
  DrawLine(dc, L"录入凭证", {design(30), 0, close.left, style_->strip_height}, TextColor());
}

void PostingPane::ShowDefaultButton() {
  if (!view_) return;
  const viewkit::CommandButton& button = view_->DefaultButton();
  for (std::size_t i = 0; i < view_->Controls().Count(); ++i) {
    const auto* other = dynamic_cast<const viewkit::CommandButton*>(&view_->Controls().At(i));
    if (other == nullptr || !other->TabStop() || WindowOf(*other) == nullptr) continue;
    const LONG wanted = other == &button ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    const LONG style = GetWindowLongW(WindowOf(*other), GWL_STYLE);
    if ((style & BS_TYPEMASK) != wanted) {
      Button_SetStyle(WindowOf(*other), (style & ~BS_TYPEMASK) | wanted, TRUE);
    }
  }
}

PickerDropDown& PostingPane::DropDown() {
  if (drop_down_) return *drop_down_;
  const auto system = plan_.system();
  if (!system) throw host::HostError("没有打开的账簿");
  drop_down_ = PickerDropDown::Make(GetAncestor(Hwnd(), GA_ROOT), style_, system.Get(),
                                    {.closed = [this](const std::vector<std::wstring>& codes) {
                                      std::vector<std::string> picked;
                                      picked.reserve(codes.size());
                                      for (const auto& code : codes) picked.push_back(Narrow(code));
                                      view_->Picked(picked);
                                    }});
  return *drop_down_;
}

void PostingPane::SetParameters(const std::shared_ptr<book::ParameterList>& parameters) {
  Picker().SetParameters(parameters);
}

std::optional<std::string> PostingPane::Resolve(const std::string& typed) {
  const auto code = Picker().Resolve(Wide(typed));
  if (!code) return std::nullopt;
  return Narrow(*code);
}

void PostingPane::Open(const std::string& sought) {
  RECT field{};
  GetWindowRect(WindowOf(view_->AccountBox()), &field);
  DropDown().Open(field, Wide(sought));
}

void PostingPane::ForgetBook() {
  drop_down_.reset();
  view_->ForgetBook();
}

/// What dialogs do with Enter and Escape, and with a mnemonic, ends here.
void PostingPane::OnCommand(int id) {
  if (id == IDCANCEL) return plan_.close();
  view_->Enter();
}

/// Boxes have the system's own menu. Which window the message names depends on how many have passed
/// it on.
void PostingPane::OnContextMenu(LPARAM place) {
  constexpr LPARAM kByKey = -1;
  const HWND part =
      place == kByKey ? GetFocus() : WindowFromPoint({GET_X_LPARAM(place), GET_Y_LPARAM(place)});
  if (part != WindowOf(view_->Lines())) return;
  const bool chosen = view_->HasChosenLine();
  const bool lines = view_->HasLines();
  const std::array entries = {MenuEntry{L"修改分录(&M)\tEnter", chosen},
                              MenuEntry{L"删除分录(&D)\tDel", chosen}, MenuEntry{},
                              MenuEntry{L"过账(&G)", lines}, MenuEntry{L"清空(&E)", lines}};
  const auto entry = ChooseEntry(Hwnd(), MenuPlaceInList(part, place), entries);
  if (entry == 0U) view_->EditChosen();
  if (entry == 1U) view_->RemoveChosen();
  if (entry == 3U) view_->Post();
  if (entry == 4U) view_->AskClear();
}

bool PostingPane::UseKey(const MSG& message) {
  const bool key = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
  const auto code = static_cast<viewkit::Key>(message.wParam);
  if (key) return view_->UseKey(code, win32::ModifiersNow());
  return message.message == WM_CHAR && view_->UseCharacter(static_cast<char32_t>(message.wParam));
}

bool PostingPane::Translate(MSG& message) {
  if (drop_down_) {
    const auto keep = drop_down_;
    if (keep->Translate(message)) return true;
  }
  return IsChild(Hwnd(), message.hwnd) && UseKey(message);
}

LRESULT PostingPane::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_LBUTTONDOWN: {
      const RECT close = CloseButton();
      if (PtInRect(&close, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) plan_.close();
      return 0;
    }
    case WM_COMMAND:
      OnCommand(LOWORD(wparam));
      return 0;
    case WM_SETFOCUS:
      FocusFirst();
      return 0;
    case WM_CONTEXTMENU:
      OnContextMenu(lparam);
      return 0;
    case WM_SYSCOLORCHANGE:
      OnColors();
      if (controls_) SendMessageW(controls_->Handle(), message, wparam, lparam);
      return 0;
    case kAccountLeft:
      if (GetFocus() != nullptr) view_->OnAccountLeft();
      return 0;
    case DM_GETDEFID:
      return MAKELRESULT(IDOK, DC_HASDEFID);
    default:
      return Pane::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
