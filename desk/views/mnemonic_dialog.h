#pragma once

#include <functional>
#include <string>
#include <vector>

#include "book/ledger/mnemonics.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/ports.h"
#include "views/form_dialog.h"

namespace desk::views {

/// The dialog that gives accounts their mnemonics: a list of those without one, or of all, with
/// what is proposed; the box below belongs to the chosen account. Enter in the box goes on to the
/// next account; space in the list takes an account out and in again.
class MnemonicDialog : public FormDialog {
 public:
  /// Writes the chosen mnemonics; what it throws is told, and the dialog stays.
  using Write = std::function<void(const std::vector<book::NewMnemonic>& wanted)>;
  MnemonicDialog(std::vector<book::MnemonicAccount> accounts, viewkit::UserPort& user, Write write);

  /// How many have been written.
  [[nodiscard]] std::size_t Written() const { return written_; }

 private:
  /// An account with what it is to have.
  struct Line {
    book::MnemonicAccount account;
    std::string wanted;
    bool taken = false;
  };

  [[nodiscard]] viewkit::Control* FirstFocus() override { return &list_; }
  [[nodiscard]] bool MayEnter() override;
  void Place();
  void Listen();
  void ShowLines();
  void ShowLine(std::size_t position);
  void ShowBox();
  void TakeBox();
  void Toggle();
  void Count();
  void Accept() override;
  [[nodiscard]] Line* Chosen();
  [[nodiscard]] static bool IsWanted(const Line& line);
  /// What would be written.
  [[nodiscard]] std::vector<book::NewMnemonic> Wanted() const;

  viewkit::UserPort& user_;
  Write write_;
  std::vector<Line> lines_;
  std::vector<std::size_t> shown_;  // places among the lines
  bool showing_ = false;            // the box is being filled: no edit of the user
  std::size_t written_ = 0;

  viewkit::CheckBox all_{"Chk", 0};
  viewkit::FlexGrid list_{"List"};
  viewkit::TextBox box_{"Txt", 0};
  viewkit::CheckBox taken_{"Chk", 1};
  viewkit::Label count_{"Lbl", 1};
};

}  // namespace desk::views
