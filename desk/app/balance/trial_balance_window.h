#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>

#include "app/frame/style.h"
#include "book/book.h"
#include "viewkit/win32/view_window.h"
#include "viewkit/win32/window.h"
#include "viewkit/win32/windows_user.h"
#include "views/trial_balance_view.h"

namespace desk::app {

/// The trial balance in a window of its own. The frame does not own it: dialogs of the view stand
/// above the frame, whichever of the two was used last.
class TrialBalanceWindow : public tavrix::viewkit::win32::Window {
 public:
  struct Calls {
    /// The window comes up for the first time: to be put where it belongs and shown.
    std::function<void(HWND)> show;
    /// The window is about to go; its place can still be asked for.
    std::function<void(HWND)> closing;
    /// A dialog above the window has opened (true) or closed.
    std::function<void(bool)> modal;
    /// The window has been closed; the layout is saved.
    std::function<void()> closed;
  };
  /// Hidden at first; it stands in the middle of `frame` unless `Calls::show` moves it. `book` must
  /// outlive the window. Throws what book and host raise.
  [[nodiscard]] static std::shared_ptr<TrialBalanceWindow> Make(HWND frame, SharedStyle style,
                                                                const book::Book& book,
                                                                Calls calls);
  TrialBalanceWindow() = default;
  TrialBalanceWindow(const TrialBalanceWindow&) = delete;
  TrialBalanceWindow& operator=(const TrialBalanceWindow&) = delete;

  void Open();
  /// Reads the book again.
  void Reload() { view_->Reload(); }
  /// For the message loop: true when the message was for this window and has been dealt with.
  [[nodiscard]] bool Translate(MSG& message);

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnContextMenu(LPARAM place);
  void OnDestroyed() override;
  void Place(HWND frame);
  [[nodiscard]] bool UseKey(const MSG& message);

  SharedStyle style_;
  Calls calls_;
  tavrix::viewkit::win32::WindowsUser user_;
  std::unique_ptr<views::TrialBalanceView> view_;
  std::optional<tavrix::viewkit::win32::ViewWindow> controls_;  // goes before the view
};

}  // namespace desk::app
