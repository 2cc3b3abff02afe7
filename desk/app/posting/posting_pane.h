#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/frame/pane.h"
#include "app/frame/style.h"
#include "app/posting/account_field.h"
#include "app/posting/posting_account.h"
#include "book/ledger/posting.h"
#include "viewkit/win32/handles.h"

namespace desk::app {

/// What the pane asks of the program around it.
struct PostingPlan {
  /// The account of a code; nothing when there is none.
  std::function<std::optional<PostingAccount>(const std::wstring& code)> account;
  /// All accounts of this code, name or mnemonic.
  std::function<std::vector<PostingAccount>(const std::wstring& typed)> typed;
  /// The host's system object of the open book, for the account picker; null without one.
  std::function<ComPtr<IDispatch>()> system;
  /// The code selected in the view; empty for none.
  std::function<std::wstring()> selected_code;
  /// Posts and gives the voucher's number. What it throws is shown in the pane.
  std::function<int(const book::Voucher&)> post;
  std::function<void()> close;
};

/// The pane in which vouchers are entered: a date and a summary, lines of accounts and amounts, and
/// their sums.
class PostingPane : public Pane {
 public:
  static constexpr int kDesignHeight = 264;

  [[nodiscard]] static std::shared_ptr<PostingPane> Make(HWND parent, SharedStyle style,
                                                         PostingPlan plan);
  void SetStyle(SharedStyle style);
  /// Focus to where a voucher begins, or to the next entry's account.
  void FocusFirst();
  /// For the message loop: true when the pane or its account picker has used the message up.
  [[nodiscard]] bool Translate(MSG& message);
  /// Asks whether what has not been posted may go; true, without a word, when there is nothing.
  [[nodiscard]] bool MayForget(const wchar_t* question) const;
  /// The picker of the open book. Throws `host::HostError`, without a book too.
  [[nodiscard]] AccountPicker& Picker() { return field_.Picker(); }
  /// The book closes: its lines and its picker go.
  void ForgetBook();

 private:
  struct Line {
    book::Entry entry;
    PostingAccount account;
    /// Picked, but without an amount yet.
    [[nodiscard]] bool Open() const { return entry.debit == 0 && entry.credit == 0; }
  };

  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void CreateParts();
  void CreateList();
  [[nodiscard]] HWND Add(const wchar_t* class_name, const wchar_t* text, DWORD style, int id);
  void Arrange() override;
  void FitColumns(int list_width);
  int ArrangeHead(int top, int height, int width);
  int ArrangeEntry(int top, int height, int width);
  void ArrangeFoot(int top, int height, int width);
  void Paint(HDC dc, const RECT& area) override;
  void PaintFoot(HDC dc, const RECT& area) const;
  void PaintListFocus(HDC dc) const;
  void OnCommand(int id, int code);
  void OnEdit(int id);
  void OnNotice(const NMHDR& header);
  void OnContextMenu(LPARAM place);
  void OnButton(int id);
  void OnEnter();
  /// Where Enter leads from a box; null when it ends the entry.
  [[nodiscard]] HWND BoxAfter(HWND box) const;
  [[nodiscard]] bool IsButton(HWND window) const;
  void ShowDefault(HWND button);
  void OnAccountLeft();
  void OnRange();
  void ShowAccount();
  /// False, and the user knows why, when there is no account.
  bool ResolveAccount();
  void TakeSelected();
  void AddLine();
  /// A line for each account, whose amounts are still to be entered.
  void AddAccounts(const std::vector<PostingAccount>& accounts);
  void EditLine(std::size_t row);
  void EditSelected();
  /// The next line without an amount, or none.
  [[nodiscard]] std::optional<std::size_t> OpenLine() const;
  void EditNew();
  [[nodiscard]] std::optional<Line> ReadLine();
  /// Nothing, and the user knows why, when the box holds no amount.
  [[nodiscard]] std::optional<std::int64_t> ReadAmount(HWND box, const wchar_t* side);
  /// Puts the amount into the boxes that the other entries lack.
  void Balance();
  void FillPartners(const PostingAccount& account, book::Auxiliary& auxiliary);
  void RemoveLine();
  void Clear();
  void PostVoucher();
  [[nodiscard]] book::Voucher ReadVoucher() const;
  void ShowLines();
  /// A short answer at the foot, red when it is a refusal; the focus goes to `box` if there is one.
  void Answer(std::wstring text, bool refusal, HWND box = nullptr);
  void Place(HWND window, int left, int top, int width, int height);
  [[nodiscard]] RECT CloseButton() const;

  SharedStyle style_;
  PostingPlan plan_;
  HWND date_label_ = nullptr;  // children, which go with the window
  HWND date_ = nullptr;
  HWND summary_label_ = nullptr;
  HWND summary_ = nullptr;
  HWND range_label_ = nullptr;
  HWND range_ = nullptr;
  HWND range_codes_ = nullptr;
  HWND code_label_ = nullptr;
  HWND code_ = nullptr;
  HWND drop_ = nullptr;
  HWND several_ = nullptr;
  HWND take_ = nullptr;
  HWND name_ = nullptr;
  HWND debit_label_ = nullptr;
  HWND debit_ = nullptr;
  HWND credit_label_ = nullptr;
  HWND credit_ = nullptr;
  HWND partner_label_ = nullptr;
  HWND partner_ = nullptr;
  HWND add_ = nullptr;
  HWND list_ = nullptr;
  HWND remove_ = nullptr;
  HWND clear_ = nullptr;
  HWND post_ = nullptr;
  RECT foot_{};
  AccountField field_;
  std::vector<Line> lines_;
  std::optional<std::size_t> edited_;  ///< the line that the boxes hold; none: a new one
  std::wstring answer_;
  bool refusal_ = false;
};

}  // namespace desk::app
