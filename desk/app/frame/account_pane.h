#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/frame/pane.h"
#include "app/frame/style.h"
#include "viewkit/win32/back_buffer.h"
#include "views/account_sheet.h"

namespace desk::app {

/// The pane beside the list that tells all of one account. Its left edge can be dragged; what has
/// no room is scrolled, by the wheel and by keys while it has the focus.
class AccountPane : public Pane {
 public:
  struct Calls {
    std::function<void()> close;  ///< the cross, or Escape
    /// The edge is dragged to this width of the pane, at 96 dots per inch.
    std::function<void(int design_width)> drag;
    std::function<void()> leave;  ///< Tab: the focus goes back to the view
    std::function<void()> due;    ///< the moment that `Expect` began is over
  };
  static constexpr int kDesignWidth = 300;
  static constexpr int kMinDesignWidth = 190;

  [[nodiscard]] static std::shared_ptr<AccountPane> Make(HWND parent, SharedStyle style,
                                                         Calls calls);

  void SetStyle(SharedStyle style);
  /// Nothing: no account is chosen; `reason` says it.
  void SetSheet(std::optional<views::AccountSheet> sheet, std::wstring reason = {});
  /// `due` is called when this has not been called again for a moment.
  void Expect();
  [[nodiscard]] tavrix::viewkit::Accessible* Inside() override { return &accessible_; }

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void Arrange() override { SetBar(); }
  [[nodiscard]] PaneEdge Edge() const override { return PaneEdge::kLeft; }
  void OnEdgeDragged(int design_size) override { calls_.drag(design_size); }
  void Paint(HDC dc, const RECT& area) override;
  void PaintSheet(HDC dc, const RECT& area);
  void PaintHeading(HDC dc, const RECT& area);
  void SetBar();
  void ScrollTo(int position);
  void OnScroll(WORD action);
  bool OnKey(WPARAM key);
  void OnClick(POINT at);
  [[nodiscard]] int Page() const;

  SharedStyle style_;
  Calls calls_;
  std::optional<views::AccountSheet> sheet_;
  std::wstring reason_;
  tavrix::viewkit::AccessibleLines accessible_;
  int height_ = 0;  // of the whole sheet
  int scrolled_ = 0;
  tavrix::viewkit::win32::BackBuffer buffer_;
};

}  // namespace desk::app
