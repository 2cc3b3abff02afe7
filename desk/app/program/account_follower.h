#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/frame/account_pane.h"
#include "app/frame/frame_window.h"
#include "book/session/session.h"

namespace desk::app {

/// Keeps the pane of the chosen account in step with the view. It reads when the selection has
/// stood still for a moment, so that an arrow key that is held down is not slowed by it.
class AccountFollower {
 public:
  /// What is chosen; the session is null while no book is open.
  struct Choice {
    book::Session* session = nullptr;
    std::string code = {};  ///< empty for none
  };
  struct Calls {
    std::function<Choice()> choice;
    std::function<void()> leave;  ///< the focus goes back to the view
  };
  /// The frame must outlive it.
  AccountFollower(FrameWindow& frame, Calls calls);

  [[nodiscard]] bool Shown() const { return shown_; }
  void SetShown(bool shown);
  [[nodiscard]] int DesignWidth() const { return design_width_; }
  void SetDesignWidth(int width);
  void SetStyle(const SharedStyle& style) { pane_->SetStyle(style); }

  /// To be told whenever the program waits for the user: another account makes it read soon.
  void Follow();
  /// What is shown may have changed.
  void Renew();

 private:
  void Read();
  void Place();

  FrameWindow& frame_;
  Calls calls_;
  std::shared_ptr<AccountPane> pane_;
  std::optional<std::string> code_;  // what is shown, or will be
  int design_width_ = AccountPane::kDesignWidth;
  bool shown_ = false;
};

}  // namespace desk::app
