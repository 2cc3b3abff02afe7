#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "book/ledger/account_ledger.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/text_box.h"
#include "views/sheet.h"

namespace desk::views {

/// The sheet of one account: its entries with the balance after each, totals of months and years.
/// An account with others below it shows the entries of all of them.
class AccountLedgerView : public Sheet {
 public:
  enum Column {
    kDate,
    kVoucher,
    kSummary,
    kCode,  ///< only where there are accounts below
    kCounter,
    kPartner,   ///< only where entries name one
    kCurrency,  ///< as the next only where entries have such an amount
    kForeign,
    kQuantity,
    kDebit,
    kCredit,
    kSide,
    kBalance,
    kColumns
  };
  struct Plan {
    std::string code;
    /// Nothing: the last year in which anything was posted.
    std::optional<book::Period> period = {};
    /// Shows the voucher of that number in that month; may be empty.
    std::function<void(const book::Month& month, int number)> open_voucher = {};
  };

  /// Book and user must outlive the view. Throws what the book raises, and `host::HostError` when
  /// there is no such account.
  AccountLedgerView(book::Session& session, viewkit::UserPort& user, Plan plan);

  /// Shows another period.
  void SetPeriod(const book::Period& period);

  // Sheet
  [[nodiscard]] std::string Title() const override;
  [[nodiscard]] std::string Subtitle() const override;
  [[nodiscard]] std::string Key() const override { return ledger_.card.account.code; }
  void Resize(int width, int height) override;
  [[nodiscard]] std::vector<MenuItem> Menu() override;
  [[nodiscard]] bool UseKey(viewkit::Key key, viewkit::Modifiers modifiers) override;

 private:
  void Read() override;
  void MakeControls();
  void FillMonths(const std::optional<book::Period>& wanted);
  [[nodiscard]] std::optional<book::Month> MonthOf(const viewkit::ComboBox& box) const;
  [[nodiscard]] book::Period ChosenPeriod() const;
  void OnPeriod(viewkit::ComboBox& changed);
  void Load(const std::string& code, std::int64_t first);
  void ShowRows();
  void ShowColumns();
  void Summarise();
  /// Which of the entries are listed, where it is not all of them.
  [[nodiscard]] std::string PageText() const;
  /// The code that the account has now; empty when it has gone.
  [[nodiscard]] std::string CodeNow() const;
  /// Shows the account that is typed.
  void TakeTyped();
  void TurnPage(int direction);
  [[nodiscard]] const book::LedgerLine* ChosenEntry() const;
  void OpenChosen();

  book::Session& session_;
  Plan plan_;
  book::AccountLedger ledger_;
  std::int64_t id_ = 0;  // of the account, whatever code it is given
  std::vector<book::Month> months_;
  bool filling_ = false;  // the boxes are being set: no choice of the user
  bool sized_ = false;    // the user has set a width by hand

  viewkit::Label code_label_{"Lbl", 0};
  viewkit::TextBox code_{"Txt"};
  viewkit::Label name_{"Lbl", 1};
  viewkit::Label first_label_{"Lbl", 2};
  viewkit::ComboBox first_{viewkit::ComboBox::Style::kList, "Combo", 0};
  viewkit::Label last_label_{"Lbl", 3};
  viewkit::ComboBox last_{viewkit::ComboBox::Style::kList, "Combo", 1};
  viewkit::CommandButton previous_{"Cmd", 0};
  viewkit::CommandButton next_{"Cmd", 1};
  viewkit::Label summary_{"Lbl", 4};
};

}  // namespace desk::views
