#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "book/ledger/opening_balance.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/text_box.h"
#include "views/posting_account.h"
#include "views/sheet.h"

namespace desk::views {

/// What the accounts open with: a row for each, with those below it summed up in it, and a row for
/// each partner of those kept by partner. The boxes below hold the chosen row; Enter takes it over
/// and goes on to the next.
class OpeningBalanceView : public Sheet {
 public:
  enum Column { kCode, kName, kSide, kPartner, kDebit, kCredit, kColumns };

  /// Book and user must outlive the view. Throws what the book raises.
  OpeningBalanceView(book::Session& session, viewkit::UserPort& user);

  // Sheet
  [[nodiscard]] std::string Title() const override { return "期初余额"; }
  void Resize(int width, int height) override;
  [[nodiscard]] std::vector<MenuItem> Menu() override;
  [[nodiscard]] bool UseKey(viewkit::Key key, viewkit::Modifiers modifiers) override;
  [[nodiscard]] bool MayClose() override;

  [[nodiscard]] bool HasChanges() const { return !changed_.empty(); }

 private:
  /// What has been typed and not saved stays.
  void Read() override;
  /// A row of the grid: an account, or one of its partners.
  struct Row {
    std::size_t account = 0;
    std::optional<std::size_t> line = {};
  };

  void MakeControls();
  void Load();
  void AddUp();
  void ShowRows(std::size_t row);
  void ShowRow();
  void Summarise();
  [[nodiscard]] std::optional<std::size_t> Chosen() const;
  /// Whether an amount can be typed for the row: for leaf accounts, and for their partners.
  [[nodiscard]] bool Takes(const Row& row) const;
  [[nodiscard]] std::int64_t BalanceOf(std::size_t account) const;
  /// Takes the boxes over; false, and the user knows why, when they cannot be.
  bool TakeBoxes();
  /// The row's account gets the balance, for the partner that is typed.
  bool SetLine(const Row& row, std::int64_t balance);
  void GoOn();
  void Move(int direction);
  void EnterBoxes();
  void AddPartner();
  void Save();
  [[nodiscard]] bool InBoxes() const;

  book::Session& session_;
  std::vector<book::OpeningAccount> accounts_;
  std::vector<std::int64_t> balances_;  // of each account with all below it
  std::vector<Row> rows_;
  std::set<std::size_t> changed_;  // accounts
  bool showing_ = false;           // the rows are being set: no choice of the user

  viewkit::Label account_{"Lbl", 0};
  viewkit::Label partner_label_{"Lbl", 1};
  viewkit::TextBox partner_{"Txt", 0};
  viewkit::Label debit_label_{"Lbl", 2};
  viewkit::TextBox debit_{"Txt", 1};
  viewkit::Label credit_label_{"Lbl", 3};
  viewkit::TextBox credit_{"Txt", 2};
  viewkit::CommandButton take_{"Cmd", 0};
  viewkit::CommandButton add_{"Cmd", 1};
  viewkit::Label sums_{"Lbl", 4};
  viewkit::CommandButton save_{"Cmd", 2};
};

}  // namespace desk::views
