#pragma once

#include <array>
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
/// each partner of those kept by partner. The boxes below hold the chosen row, foreign amount, rate
/// and quantity included where its account is kept so; Enter takes it over and goes on to the next.
class OpeningBalanceView : public Sheet {
 public:
  enum Column {
    kCode,
    kName,
    kSide,
    kPartner,
    kCurrency,  ///< as the next three only where accounts are kept so
    kForeign,
    kRate,
    kQuantity,
    kDebit,
    kCredit,
    kColumns
  };

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

  /// An account with all below it. Foreign amounts and quantities are told where all are of one
  /// kind.
  struct Total {
    std::int64_t balance = 0;
    std::set<std::string> currencies = {};
    std::int64_t foreign = 0;
    std::set<std::string> units = {};
    double quantity = 0;
    void Add(const book::OpeningLine& line, const std::string& unit);
    void Add(const Total& below);
    [[nodiscard]] book::OpeningLine Shown() const;
  };

  void MakeControls();
  void Listen();
  void ArrangeForeign(int top);
  void Load();
  void AddUp();
  void ShowRows(std::size_t row);
  void ShowColumns();
  void ShowRow();
  void ShowForeign(const book::OpeningAccount* account, const book::OpeningLine& line);
  void Summarise();
  [[nodiscard]] std::optional<std::size_t> Chosen() const;
  /// Whether an amount can be typed for the row: for leaf accounts, and for their partners.
  [[nodiscard]] bool Takes(const Row& row) const;
  [[nodiscard]] static std::vector<Partner> WantedOf(const book::OpeningAccount& account);
  [[nodiscard]] std::int64_t BalanceOf(std::size_t account) const;
  /// What stands for the row, which takes an amount.
  [[nodiscard]] book::OpeningLine LineOf(const Row& row) const;
  /// Takes the boxes over; false, and the user knows why, when they cannot be.
  bool TakeBoxes();
  /// Works out the third of foreign amount, rate and amount. Throws (`HostError`) when one of the
  /// boxes holds no number.
  void WorkOut();
  /// What the boxes hold for the row; throws as above.
  [[nodiscard]] book::OpeningLine ReadLine(const Row& row) const;
  void ReadForeign(const book::OpeningAccount& account, book::OpeningLine& line) const;
  /// The row gets the line. Throws (`HostError`) when that cannot be.
  void SetLine(const Row& row, book::OpeningLine line);
  void GoOn();
  void Move(int direction);
  void EnterBoxes();
  void AddPartner();
  void Save();
  [[nodiscard]] std::array<viewkit::TextBox*, 6> Boxes();
  [[nodiscard]] bool InBoxes();
  /// The amount's box on the side that has one, else on the account's.
  [[nodiscard]] viewkit::TextBox& SideBox();
  /// Where a row's amounts begin.
  [[nodiscard]] viewkit::TextBox& FirstAmount();
  /// Where Enter leads from the focused box; null when it ends the row.
  [[nodiscard]] viewkit::TextBox* NextBox();
  static void Enter(viewkit::TextBox& box);

  book::Session& session_;
  std::vector<book::OpeningAccount> accounts_;
  std::vector<Total> totals_;  // of each account
  std::vector<Row> rows_;
  std::set<std::size_t> changed_;  // accounts
  bool showing_ = false;           // the rows are being set: no choice of the user
  bool filling_ = false;           // the boxes are being set: no edit of the user
  bool sized_ = false;             // columns have widths that the user has set
  bool saved_ = false;             // what was typed last has been saved
  bool typed_ = false;             // the boxes hold what has not been taken over
  bool worked_out_ = true;         // nothing was typed since the third of them was worked out
  bool by_rate_ = false;           // foreign amount or rate were typed last, not the amount
  bool foreign_kept_ = false;      // some account is kept in a foreign currency, or by quantity
  int width_ = 0;
  int height_ = 0;

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
  viewkit::Label foreign_label_{"Lbl", 5};
  viewkit::TextBox foreign_{"Txt", 3};
  viewkit::Label rate_label_{"Lbl", 6};
  viewkit::TextBox rate_{"Txt", 4};
  viewkit::Label quantity_label_{"Lbl", 7};
  viewkit::TextBox quantity_{"Txt", 5};
};

}  // namespace desk::views
