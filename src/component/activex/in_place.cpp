#include "component/activex/in_place.h"

#include <utility>

#include "com/failure.h"
#include "component/activex/active_control.h"
#include "viewkit/win32/handles.h"

namespace tavrix::component {

using viewkit::win32::ViewWindow;

namespace {

constexpr LONG kFar = 32'767;  // no window lies beyond

}  // namespace

InPlace::~InPlace() {
  // A container that lets go without a word gets none either: its site may be gone.
  window_.reset();
}

void InPlace::Activate(bool ui) {
  const com::ComPtr<IUnknown> keep(&control_.ControllingUnknown());
  if (Active() && window_->Handle() == nullptr) Deactivate();  // the container took it away
  if (Active()) {
    SetShown(true);
  } else if (!site_) {
    EnterSite();
  }
  const auto client = control_.ClientSite().Client();
  if (client && Active()) client->ShowObject();
  if (!ui || !Active()) return;
  TakeFrame();
  if (Active() && !window_->HasFocus()) window_->FocusFirst();
}

void InPlace::EnterSite() {
  const auto site = control_.ClientSite().Client().As<IOleInPlaceSite>();
  if (!site) throw com::ComFailure(E_UNEXPECTED);
  site_ = site;
  try {
    OpenIn(site);
  } catch (...) {
    if (site_.Get() == site.Get()) Leave();
    throw;
  }
}

/// In each of these calls the container may take the control out again.
void InPlace::OpenIn(const com::ComPtr<IOleInPlaceSite>& site) {
  const auto left = [&] { return site_.Get() != site.Get(); };
  if (site->CanInPlaceActivate() != S_OK) throw com::ComFailure(E_FAIL);
  if (left()) return;
  entered_ = true;
  const HRESULT entered = site->OnInPlaceActivate();
  if (left()) return;
  entered_ = SUCCEEDED(entered);
  com::Check(entered);
  HWND parent = nullptr;
  RECT position{};
  // Some containers give no clipping rectangle.
  RECT clip{-kFar, -kFar, kFar, kFar};
  OLEINPLACEFRAMEINFO frame_info{};
  frame_info.cb = sizeof frame_info;
  com::ComPtr<IOleInPlaceFrame> frame;
  com::ComPtr<IOleInPlaceUIWindow> document;
  com::Check(site->GetWindow(&parent));
  com::Check(site->GetWindowContext(frame.Put(), document.Put(), &position, &clip, &frame_info));
  if (left()) return;
  frame_ = frame;
  document_ = document;
  auto window = MakeWindow(parent, position);
  if (left()) return;
  window_ = std::move(window);
  Place(position, clip);
}

std::unique_ptr<ViewWindow> InPlace::MakeWindow(HWND parent, const RECT& position) {
  viewkit::win32::ViewWindowOptions options;
  options.parent = parent;
  options.place = position;
  options.back_color = control_.View().BackColor();
  options.fore_color = control_.ClientSite().ForeColor();
  options.font = control_.ClientSite().Font();
  options.resized = [this](int width, int height) { control_.Resize({width, height}); };
  options.focus_changed = [this](bool focused) { FocusChanged(focused); };
  options.focus_moved = [this] { FocusMoved(); };
  options.destroyed = [this] { WindowGone(); };
  // A host may let go of the control while it handles the user's click or key.
  options.keep = [this] {
    return std::make_shared<com::ComPtr<IUnknown>>(&control_.ControllingUnknown());
  };
  return std::make_unique<ViewWindow>(control_.View().Controls(), std::move(options));
}

com::ComPtr<IOleInPlaceActiveObject> InPlace::ActiveObject() const {
  return com::ComPtr<IUnknown>(&control_.ControllingUnknown()).As<IOleInPlaceActiveObject>();
}

void InPlace::TakeFrame() {
  if (std::exchange(user_active_, true)) return;
  const com::ComPtr<IOleInPlaceSite> site = site_;
  if (FAILED(site->OnUIActivate())) {
    user_active_ = false;
    return;
  }
  const auto object = ActiveObject();
  const auto take = [&](const auto& window) {
    if (!window) return;
    window->SetActiveObject(object.Get(), nullptr);
    window->SetBorderSpace(nullptr);  // the container keeps its tool bars: the control has none
  };
  take(com::ComPtr<IOleInPlaceFrame>(frame_));
  take(com::ComPtr<IOleInPlaceUIWindow>(document_));
}

void InPlace::UiDeactivate() {
  if (!std::exchange(user_active_, false)) return;
  const com::ComPtr<IUnknown> keep(&control_.ControllingUnknown());
  const com::ComPtr<IOleInPlaceSite> site = site_;
  const auto let_go = [](const auto& window) {
    if (window) window->SetActiveObject(nullptr, nullptr);
  };
  let_go(com::ComPtr<IOleInPlaceUIWindow>(document_));
  let_go(com::ComPtr<IOleInPlaceFrame>(frame_));
  if (site) site->OnUIDeactivate(FALSE);
}

void InPlace::Deactivate() {
  if (!Active() && !site_) return;
  const com::ComPtr<IUnknown> keep(&control_.ControllingUnknown());
  UiDeactivate();
  const auto window = std::exchange(window_, nullptr);
  Leave();
}

/// The container forgets the control's window.
void InPlace::Leave() {
  const auto site = std::exchange(site_, nullptr);
  frame_ = nullptr;
  document_ = nullptr;
  user_active_ = false;
  if (std::exchange(entered_, false)) site->OnInPlaceDeactivate();
}

void InPlace::WindowGone() {
  // The container has destroyed its window with ours in it. The owner of the handle goes later:
  // this is called from inside it.
  if (window_ == nullptr) return;
  frame_ = nullptr;
  document_ = nullptr;
  user_active_ = false;
}

void InPlace::FocusChanged(bool focused) {
  const com::ComPtr<IUnknown> keep(&control_.ControllingUnknown());
  if (focused && Active()) TakeFrame();
  if (const auto site = control_.ClientSite().Control()) site->OnFocus(focused ? TRUE : FALSE);
}

void InPlace::FocusMoved() {
  const DWORD keys = KeysEaten();
  if (keys == std::exchange(keys_told_, keys)) return;
  const com::ComPtr<IUnknown> keep(&control_.ControllingUnknown());
  if (const auto site = control_.ClientSite().Control()) site->OnControlInfoChanged();
}

DWORD InPlace::KeysEaten() const {
  if (!Active()) return 0;
  const auto eats = [this](viewkit::Key key, DWORD flag) {
    return window_->FocusWantsKey(key) ? flag : 0;
  };
  return eats(viewkit::Key::kEnter, CTRLINFO_EATS_RETURN) |
         eats(viewkit::Key::kEscape, CTRLINFO_EATS_ESCAPE);
}

void InPlace::Place(const RECT& position, const RECT& clip) {
  if (!Active()) return;
  const com::ComPtr<IUnknown> keep(&control_.ControllingUnknown());
  window_->SetPlace(position);
  if (!Active()) return;  // the view tells the host what has moved
  RECT shown{};
  IntersectRect(&shown, &position, &clip);
  if (EqualRect(&shown, &position)) {
    SetWindowRgn(window_->Handle(), nullptr, TRUE);
    return;
  }
  OffsetRect(&shown, -position.left, -position.top);
  // The system owns a region from here on.
  SetWindowRgn(window_->Handle(), CreateRectRgnIndirect(&shown), TRUE);
}

void InPlace::SetShown(bool shown) {
  if (Active()) window_->SetShown(shown);
}

bool InPlace::Translate(MSG& message) {
  const com::ComPtr<IUnknown> keep(&control_.ControllingUnknown());
  return Active() && window_->TranslateAccelerator(message);
}

HWND InPlace::ModalOwner() const {
  HWND owner = nullptr;
  if (frame_ && SUCCEEDED(frame_->GetWindow(&owner)) && owner != nullptr) return owner;
  return Active() ? window_->Handle() : nullptr;
}

void InPlace::SetModal(bool open) {
  // The frame that was disabled is enabled again, though the control may have left it meanwhile.
  if (open) disabled_frames_.push_back(frame_);
  if (disabled_frames_.empty()) return;
  const auto frame = disabled_frames_.back();
  if (!open) disabled_frames_.pop_back();
  if (frame) frame->EnableModeless(open ? FALSE : TRUE);
}

}  // namespace tavrix::component
