#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "book/chart/merge.h"
#include "views/preview_dialog.h"

namespace desk::views {

/// The dialog that merges a leaf account into another: it compares the two, and shows what moves.
class MergeDialog : public PreviewDialog {
 public:
  /// Throws what the database raises, also that the account is gone or is no leaf account.
  MergeDialog(book::Session& session, const std::string& code, LongRunner run);

  /// What was shown last; nothing before another account was named.
  [[nodiscard]] const std::optional<book::MergePlan>& Plan() const { return plan_; }
  /// How many rows of the ledgers have moved.
  [[nodiscard]] std::int64_t Moved() const { return moved_; }

 private:
  void PlaceForm();
  void OnTyped();
  void Carry(const book::Progress& progress) override;
  void Renew() override { OnTyped(); }
  [[nodiscard]] Preview PreviewOf(const book::MergePlan& plan) const;

  book::Session& session_;
  book::ChartAccount from_;
  std::optional<book::MergePlan> plan_;
  std::int64_t moved_ = 0;

  viewkit::TextBox into_{"Txt", 0};
  viewkit::Label into_name_{"Lbl", 3};
};

}  // namespace desk::views
