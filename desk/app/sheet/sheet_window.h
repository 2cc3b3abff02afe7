#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>

#include "app/frame/style.h"
#include "viewkit/win32/view_window.h"
#include "viewkit/win32/window.h"
#include "viewkit/win32/windows_user.h"
#include "views/sheet.h"

namespace desk::app {

/// A sheet in a window of its own. The frame does not own it: dialogs of the view stand above the
/// frame, whichever of the two was used last.
class SheetWindow : public tavrix::viewkit::win32::Window {
 public:
  struct Calls {
    /// The window comes up for the first time: to be put where it belongs and shown.
    std::function<void(HWND)> show;
    /// The window is about to go; its place can still be asked for.
    std::function<void(HWND)> closing;
    /// A dialog above this window has opened (true) or closed.
    std::function<void(HWND, bool)> modal;
    /// The window has been closed, and its view has gone.
    std::function<void()> closed;
    /// A key that neither the view nor its controls have a use for; true when it is used up.
    std::function<bool(SheetWindow&, tavrix::viewkit::Key, tavrix::viewkit::Modifiers)> key;
  };
  /// What the window is asked for: the view, which may ask the user, and the size at 96 dots per
  /// inch when nothing is remembered.
  using Making = std::function<std::unique_ptr<views::Sheet>(tavrix::viewkit::UserPort& user)>;
  struct Plan {
    Making make;
    SIZE design{1160, 640};
  };

  /// Hidden at first; it stands in the middle of `frame` unless `Calls::show` moves it. Throws what
  /// making the view raises.
  [[nodiscard]] static std::shared_ptr<SheetWindow> Make(HWND frame, SharedStyle style,
                                                         const Plan& plan, Calls calls);

  /// Brings the window to the front.
  void Open();
  /// As long as the window is alive.
  [[nodiscard]] views::Sheet& View() { return *view_; }
  /// Asks above this window.
  [[nodiscard]] tavrix::viewkit::win32::WindowsUser& User() { return user_; }
  /// For the message loop: true when the message was for this window and has been dealt with.
  [[nodiscard]] bool Translate(MSG& message);

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnContextMenu(LPARAM place);
  void OnDestroyed() override;
  void Place(HWND frame, SIZE design);
  [[nodiscard]] bool UseKey(const MSG& message);
  [[nodiscard]] bool UseLastKey(const MSG& message);

  SharedStyle style_;
  Calls calls_;
  tavrix::viewkit::win32::WindowsUser user_;
  std::unique_ptr<views::Sheet> view_;
  std::optional<tavrix::viewkit::win32::ViewWindow> controls_;  // goes before the view
};

}  // namespace desk::app
