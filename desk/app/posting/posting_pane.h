#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/com.h"
#include "app/frame/pane.h"
#include "app/frame/style.h"
#include "app/posting/picker_drop_down.h"
#include "viewkit/win32/view_window.h"
#include "viewkit/win32/windows_user.h"
#include "views/voucher_view.h"

namespace desk::app {

/// What the pane asks of the program around it.
struct PostingPlan {
  /// The open book's; null without one.
  std::function<book::Session*()> session;
  /// The host's system object of the open book, for the account picker; null without one.
  std::function<ComPtr<IDispatch>()> system;
  /// The code selected in the view; empty for none.
  std::function<std::string()> selected_code;
  /// Posts and gives the voucher's number. What it throws is shown in the pane.
  std::function<int(const book::Voucher&)> post;
  std::function<void()> close;
};

/// The window in which vouchers are entered: a heading, the voucher's view, and the account picker
/// that drops down from it.
class PostingPane : public Pane, private views::AccountChooser {
 public:
  static constexpr int kDesignHeight = 264;

  [[nodiscard]] static std::shared_ptr<PostingPane> Make(HWND parent, SharedStyle style,
                                                         PostingPlan plan);

  void SetStyle(SharedStyle style);
  /// Focus to where a voucher begins, or to the next entry's account.
  void FocusFirst() { view_->FocusFirst(); }
  /// For the message loop: true when the pane or its account picker has used the message up.
  [[nodiscard]] bool Translate(MSG& message);
  /// As `VoucherView::Take`.
  void Take(const book::Voucher& voucher) { view_->Take(voucher); }
  /// Asks whether what has not been posted may go; true, without a word, when there is nothing.
  [[nodiscard]] bool MayForget(const char* question) { return view_->MayForget(question); }
  /// The picker of the open book. Throws `host::HostError`, without a book too.
  [[nodiscard]] AccountPicker& Picker() { return DropDown().Picker(); }
  /// The book closes: its lines and its picker go.
  void ForgetBook();

 private:
  // AccountChooser
  void SetParameters(const std::shared_ptr<book::ParameterList>& parameters) override;
  [[nodiscard]] std::optional<std::string> Resolve(const std::string& typed) override;
  [[nodiscard]] bool Filters() override { return Picker().Filters(); }
  void Open(const std::string& sought) override;
  [[nodiscard]] bool IsOpen() const override { return drop_down_ && drop_down_->Shown(); }

  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override;
  void MakeView();
  void Arrange() override;
  void Paint(HDC dc, const RECT& area) override;
  void OnColors();
  void OnCommand(int id);
  void OnContextMenu(LPARAM place);
  [[nodiscard]] bool UseKey(const MSG& message);
  /// The button that Enter clicks looks like it.
  void ShowDefaultButton();
  [[nodiscard]] RECT ViewArea() const;
  [[nodiscard]] RECT CloseButton() const;
  [[nodiscard]] PickerDropDown& DropDown();

  SharedStyle style_;
  PostingPlan plan_;
  tavrix::viewkit::win32::WindowsUser user_;
  std::unique_ptr<views::VoucherView> view_;
  std::optional<tavrix::viewkit::win32::ViewWindow> controls_;  // goes before the view
  std::shared_ptr<PickerDropDown> drop_down_;                   // made when it is first needed
};

}  // namespace desk::app
