#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "book/host/parameters.h"
#include "book/session/session.h"
#include "host/non_copyable.h"
#include "viewkit/controls/text_box.h"
#include "views/posting_account.h"

namespace desk::views {

namespace viewkit = tavrix::viewkit;

/// The account picker as an account's box uses it. All members throw what database and picker
/// raise, also that there is no open book.
class AccountChooser {
 public:
  virtual ~AccountChooser() = default;
  /// Which accounts may be picked or typed; counts for the calls that follow.
  virtual void SetParameters(const std::shared_ptr<book::ParameterList>& parameters) = 0;
  /// The code of the account that is typed as code, name or mnemonic; nothing when the parameters
  /// allow none.
  [[nodiscard]] virtual std::optional<std::string> Resolve(const std::string& typed) = 0;
  /// The search hides what does not match; else it goes to the first match.
  [[nodiscard]] virtual bool Filters() = 0;
  /// Drops down from the box; `sought` is searched. Ends in `AccountField::Picked`.
  virtual void Open(const std::string& sought) = 0;
  [[nodiscard]] virtual bool IsOpen() const = 0;
};

/// The box for a line's account: what is typed there becomes an account, by its code, name or
/// mnemonic, or one is picked. Which accounts are allowed is the picker's to say, both ways.
class AccountField : private tavrix::host::NonCopyable {
 public:
  struct Calls {
    /// The open book's; null without one.
    std::function<book::Session*()> session;
    /// The account is another one, or none any more.
    std::function<void()> changed;
    /// Several accounts have been picked at once.
    std::function<void(const std::vector<PostingAccount>& accounts)> several;
  };

  /// Box and chooser must outlive it.
  AccountField(viewkit::TextBox& box, AccountChooser& chooser, Calls calls);

  /// Which accounts are allowed: a number in `AccountRanges`, and the user's part of it.
  void SetRange(std::size_t range, std::string typed);

  [[nodiscard]] const std::optional<PostingAccount>& Account() const { return account_; }
  /// The account of a code; nothing when there is none. Throws what the database raises.
  [[nodiscard]] std::optional<PostingAccount> AccountOf(const std::string& code) const;
  /// Without blanks around it.
  [[nodiscard]] std::string Typed() const;
  /// Turns what is typed into an account. Gives why not, for the user; empty also for an empty box.
  /// Throws what database and picker raise.
  [[nodiscard]] std::string Resolve();
  void Set(const PostingAccount& account);
  /// Another text in the box, not yet an account.
  void SetTyped(const std::string& text);
  void Clear() { SetTyped({}); }

  /// Drops the picker down, for one account or for several.
  void Open(bool several);
  [[nodiscard]] bool IsOpen() const { return chooser_.IsOpen(); }
  /// The drop-down has closed; no codes when nothing was picked.
  void Picked(const std::vector<std::string>& codes);

 private:
  [[nodiscard]] std::string Find(const std::string& typed);
  [[nodiscard]] std::optional<std::string> ResolvedWithoutCase(
      const std::vector<PostingAccount>& found);
  [[nodiscard]] std::string Refusal(const std::string& typed,
                                    const std::vector<PostingAccount>& found) const;
  [[nodiscard]] std::vector<PostingAccount> TypedAccounts(const std::string& typed) const;
  void OnTextChanged();

  viewkit::TextBox& box_;
  AccountChooser& chooser_;
  Calls calls_;
  std::optional<PostingAccount> account_;
  std::size_t range_ = 0;
  std::string range_typed_;
  bool several_ = false;  // what the open drop-down is for
  bool showing_ = false;  // the box is being written: no edit of the user
};

}  // namespace desk::views
