#pragma once

#include <string>

#include "book/chart/move_accounts.h"
#include "views/preview_dialog.h"

namespace desk::views {

/// The dialog that gives an account, with all below it, another code: for the user it is given
/// another number, or moves below another account, where a free code is proposed.
class MoveDialog : public PreviewDialog {
 public:
  enum class Purpose { kRenumber, kMove };
  /// Throws what the database raises, also that the account is gone.
  MoveDialog(book::Session& session, const std::string& code, Purpose purpose, LongRunner run);

  /// What was shown last.
  [[nodiscard]] const book::MovePlan& Plan() const { return plan_; }
  [[nodiscard]] const book::MoveResult& Result() const { return result_; }

 private:
  void PlaceForm();
  void OnParentTyped();
  void Plan(const std::string& new_code);
  void Carry(const book::Progress& progress) override;
  void Renew() override;
  [[nodiscard]] Preview PreviewOf() const;
  [[nodiscard]] std::string Summary() const;

  book::Session& session_;
  Purpose purpose_;
  book::MovedSubtree subtree_;
  book::MovePlan plan_;
  book::MoveResult result_;
  std::string parent_refusal_;  // why what is typed is no parent; empty when it is one

  viewkit::TextBox parent_{"Txt", 0};
  viewkit::Label parent_name_{"Lbl", 3};
  viewkit::TextBox code_{"Txt", 1};
};

/// The one account that is typed by its code, name or mnemonic; else why there is none.
struct TypedAccount {
  std::string code = {};
  std::string name = {};
  std::string refusal = {};
};
[[nodiscard]] TypedAccount FindOneTyped(book::Session& session, const std::string& typed);

}  // namespace desk::views
