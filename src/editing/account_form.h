#pragma once

#include <deque>

#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/frame_box.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/option_button.h"
#include "viewkit/controls/text_box.h"

namespace tavrix::editing {

// What each member of the control arrays stands for.
enum TextIndex { kCodeBox, kNameBox, kEnglishNameBox, kMnemonicBox, kControlledByBox, kTexts };
enum CheckIndex {
  kGatherCheck,
  kCurrencyCheck,
  kQuantityCheck,
  kClosedCheck,
  kDepartmentCheck,
  kPersonCheck,
  kCustomerCheck,
  kSupplierCheck,
  kProjectCheck,
  kJournalCheck,
  kBankBookCheck,
  kChecks
};
enum OptionIndex { kDebitOption, kCreditOption, kOptions };
enum ListIndex { kCurrencyList, kCategoryList, kGatherList, kUnitList, kBookTypeList, kLists };
enum ButtonIndex { kSaveButton, kCancelButton, kButtons };

/// The account dialog's controls and where they stand; what they do is `FmBkmAdd`'s business.
///
/// Window identifiers: 100 + index for `Txt`, 200 for `Chk`, 300 for `opt`, 400 for `Combo`, 500
/// for `Cmd`.
class AccountForm : public viewkit::DialogModel {
 public:
  AccountForm();

  [[nodiscard]] viewkit::TextBox& Txt(int index) { return At(txt_, index); }
  [[nodiscard]] viewkit::CheckBox& Chk(int index) { return At(chk_, index); }
  [[nodiscard]] viewkit::OptionButton& opt(int index) { return At(opt_, index); }
  [[nodiscard]] viewkit::ComboBox& Combo(int index) { return At(combo_, index); }
  [[nodiscard]] viewkit::CommandButton& Cmd(int index) { return At(cmd_, index); }

 protected:
  /// The controls as in a dialog that was just created: empty, enabled, no items, debit chosen.
  void ResetControls();
  /// What stands above the account's own fields: the account that it is part of.
  void ShowAbove(const std::string& text);

 private:
  template <class Member>
  static Member& At(std::deque<Member>& array, int index) {
    return array.at(static_cast<std::size_t>(index));
  }

  void CreateControls();
  void PlaceAccount();
  void PlaceKinds();
  void PlaceAuxiliary();
  void PlaceFlags();
  void PlaceButtons();

  void PlaceFrame(const char* caption, const host::Bounds& bounds);
  viewkit::Label& PlaceLabel(const char* caption, const host::Bounds& bounds);
  void Place(viewkit::Control& control, int identifier, const host::Bounds& bounds);
  void PlaceText(int index, const host::Bounds& bounds);
  void PlaceList(int index, const host::Bounds& bounds);
  void PlaceCheck(int index, const char* caption, const host::Bounds& bounds);
  void PlaceOption(int index, const char* caption, const host::Bounds& bounds);
  void PlaceButton(int index, const char* caption, const host::Bounds& bounds);

  viewkit::OptionGroup direction_;  // before the buttons, which leave it when they end
  std::deque<viewkit::FrameBox> frames_;
  std::deque<viewkit::Label> labels_;
  viewkit::Label* above_ = nullptr;  // one of them
  std::deque<viewkit::TextBox> txt_;
  std::deque<viewkit::CheckBox> chk_;
  std::deque<viewkit::OptionButton> opt_;
  std::deque<viewkit::ComboBox> combo_;
  std::deque<viewkit::CommandButton> cmd_;
};

}  // namespace tavrix::editing
