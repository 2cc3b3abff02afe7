#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "book/ledger/trial_balance.h"
#include "book/session/session.h"
#include "host/objects.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/grid/flex_grid.h"
#include "views/column_layout.h"
#include "views/sheet.h"

namespace desk::views {

/// The trial balance of a book: one row for each account, subtotals by category and, if wanted, by
/// first-level account. What is grouped and summed is the layout's to say; a user who has none gets
/// the one that comes with the program.
class TrialBalanceView : public Sheet {
 public:
  /// Columns of the grid. The months are hidden at first: they are for copying rows elsewhere.
  enum Column {
    kMonth,
    kCategory,
    kFirstLevel,
    kCode,
    kName,
    kOpeningDebit,
    kOpeningCredit,
    kDebit,
    kCredit,
    kClosingDebit,
    kClosingCredit,
    kColumns
  };

  /// Shows the sheet of an account for a period.
  using OpenAccount = std::function<void(const std::string& code, const book::Period& period)>;

  /// Book, host and user must outlive the view. Throws what the book and the host raise.
  TrialBalanceView(book::Session& session, std::shared_ptr<host::SystemObject> system,
                   viewkit::UserPort& user, OpenAccount open_account = {});
  /// Saves the layout.
  ~TrialBalanceView() override;

  // Sheet
  [[nodiscard]] std::string Title() const override;
  [[nodiscard]] std::string Subtitle() const override;
  void Resize(int width, int height) override;
  [[nodiscard]] std::vector<MenuItem> Menu() override;
  [[nodiscard]] bool UseKey(viewkit::Key key, viewkit::Modifiers modifiers) override;

  /// Asks for another layout.
  void AskLayout();

 private:
  void Read() override;
  void MakeGrid();
  void ResetColumns();
  void MakeStrip();
  void FillLevels();
  void ReadMonths();
  void Load();
  void OnLevel();
  /// Totals of the rows that are leaves: sums over all rows would count what parents repeat.
  void AppendTotals(host::RowSet& rows, const std::vector<book::TrialBalanceRow>& balance);
  [[nodiscard]] int ChosenLevel() const { return level_.ItemData(level_.ListIndex()); }
  [[nodiscard]] bool IsTotal(int row) const;
  [[nodiscard]] std::string ChosenCode() const;
  void OpenChosen();
  /// Totals look alike, in the user's own colours, show zeros as the rows do, and stand only where
  /// they add something.
  void DressTotals();
  void GreySealed(const std::vector<book::TrialBalanceRow>& rows);
  void Summarise(const std::vector<book::TrialBalanceRow>& rows);
  void ApplyLayout();
  void SetByFirstLevel(bool wanted);
  void ShowByFirstLevel();
  void RestoreDefaults();
  [[nodiscard]] std::optional<book::Month> ChosenMonth() const;

  book::Session& session_;
  std::shared_ptr<host::SystemObject> system_;
  OpenAccount open_account_;
  std::string layout_path_;
  std::vector<book::Month> months_;
  std::vector<int> own_totals_;  // rows of totals that the layout has not made
  bool filling_ = false;         // the boxes are being set: no choice of the user

  viewkit::Label month_label_{"Lbl", 0};
  viewkit::ComboBox month_{viewkit::ComboBox::Style::kList, "Combo"};
  viewkit::Label level_label_{"Lbl", 2};
  viewkit::ComboBox level_{viewkit::ComboBox::Style::kList, "Combo", 1};
  viewkit::CheckBox by_first_level_{"Chk"};
  viewkit::CommandButton layout_{"Cmd", 0};
  viewkit::CommandButton reload_{"Cmd", 1};
  viewkit::Label summary_{"Lbl", 1};
};

}  // namespace desk::views
