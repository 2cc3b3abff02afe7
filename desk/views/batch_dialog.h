#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "book/chart/batch.h"
#include "viewkit/controls/option_button.h"
#include "views/preview_dialog.h"

namespace desk::views {

/// The dialog that seals, unseals or deletes several accounts at once. Space or a double click in
/// the list chooses an account with all below it, Ctrl+A all that are listed.
class BatchDialog : public PreviewDialog {
 public:
  /// The account `code` is chosen at first, with all below it. Throws what the database raises.
  BatchDialog(book::Session& session, const std::string& code, LongRunner run);

  [[nodiscard]] const book::BatchPlan& Plan() const { return plan_; }
  /// How many accounts have changed.
  [[nodiscard]] std::int64_t Changed() const { return changed_; }

 private:
  void PlaceForm();
  void Listen();
  [[nodiscard]] book::BatchAction Action() const;
  void Toggle();
  void ToggleAll();
  /// Chooses an account with all below it, or takes it out, and all that it hangs below.
  void Choose(std::size_t account, bool chosen);
  void ShowPlan();
  [[nodiscard]] Row RowOf(std::size_t account, const book::BatchRow* planned) const;
  [[nodiscard]] std::string Summary() const;
  [[nodiscard]] std::string WhyNot() const;
  void Carry(const book::Progress& progress) override;
  void Renew() override;

  book::Session& session_;
  book::BatchChart chart_;
  std::set<std::size_t> chosen_;
  book::BatchPlan plan_;
  std::vector<std::size_t> filtered_;  // the accounts that the filter leaves
  std::int64_t changed_ = 0;

  viewkit::OptionGroup actions_;
  viewkit::OptionButton seal_{actions_, "Opt", 0};
  viewkit::OptionButton unseal_{actions_, "Opt", 1};
  viewkit::OptionButton delete_{actions_, "Opt", 2};
  viewkit::TextBox filter_{"Txt", 0};
};

}  // namespace desk::views
