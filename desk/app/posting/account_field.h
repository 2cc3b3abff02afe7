#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/com.h"
#include "app/frame/style.h"
#include "app/posting/picker_drop_down.h"
#include "app/posting/posting_account.h"

namespace desk::app {

/// The box for a line's account: what is typed there becomes an account, by its code, name or
/// mnemonic, or one is picked. Which accounts are allowed is the picker's to say, both ways.
class AccountField {
 public:
  struct Plan {
    /// The account of a code; nothing when there is none.
    std::function<std::optional<PostingAccount>(const std::wstring& code)> account;
    /// All accounts of this code, name or mnemonic, whatever may be posted to.
    std::function<std::vector<PostingAccount>(const std::wstring& typed)> typed;
    /// The host's system object of the open book; null without one.
    std::function<ComPtr<IDispatch>()> system;
    /// The account is another one, or none any more.
    std::function<void()> changed;
    /// Several accounts have been picked at once.
    std::function<void(std::vector<PostingAccount> accounts)> several;
  };

  AccountField() = default;
  AccountField(const AccountField&) = delete;
  AccountField& operator=(const AccountField&) = delete;

  /// `box` is an edit control that outlives this.
  void Attach(HWND box, SharedStyle style, Plan plan);
  void SetStyle(SharedStyle style);
  /// Which accounts are allowed: a number in `AccountRanges`, and the user's part of it.
  void SetRange(std::size_t range, std::string typed);

  [[nodiscard]] const std::optional<PostingAccount>& Account() const { return account_; }
  /// Turns what is typed into an account. Gives why not, for the user; empty also for an empty box.
  /// Throws what database and picker raise.
  [[nodiscard]] std::wstring Resolve();
  void Set(const PostingAccount& account);
  void Clear();
  /// The box's text has been changed (EN_CHANGE).
  void OnTextChanged();

  /// Drops the picker down, for one account or for several.
  void Open(bool several);
  [[nodiscard]] bool IsOpen() const { return drop_down_ && drop_down_->Shown(); }
  void Focus();
  /// The picker of the open book. Throws `host::HostError`, without a book too.
  [[nodiscard]] AccountPicker& Picker() { return DropDown().Picker(); }
  /// For the message loop: the keys that open the picker, and all that the open picker gets.
  [[nodiscard]] bool Translate(MSG& message);
  /// The book closes: the picker goes, and the account with it.
  void ForgetBook();

 private:
  [[nodiscard]] PickerDropDown& DropDown();
  [[nodiscard]] std::wstring Find(const std::wstring& typed);
  [[nodiscard]] std::wstring Refusal(const std::wstring& typed,
                                     const std::vector<PostingAccount>& found) const;
  void OnClosed(const std::vector<std::wstring>& codes);
  [[nodiscard]] std::wstring Typed() const;

  HWND box_ = nullptr;
  SharedStyle style_;
  Plan plan_;
  std::shared_ptr<PickerDropDown> drop_down_;  // made when it is first needed
  std::optional<PostingAccount> account_;
  std::size_t range_ = 0;
  std::string range_typed_;
  bool several_ = false;  // what the open drop-down is for
  bool showing_ = false;  // the box is being written: no edit of the user
};

}  // namespace desk::app
