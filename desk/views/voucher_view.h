#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "book/ledger/posting.h"
#include "host/non_copyable.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/date_picker.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/list_view.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/ports.h"
#include "views/account_field.h"

namespace desk::views {

/// Where vouchers are entered: a date and a summary, lines of accounts and amounts, and their sums.
/// Enter leads from box to box and, from the last one of an entry, into the list.
class VoucherView : private tavrix::host::NonCopyable {
 public:
  struct Plan {
    /// The open book's; null without one.
    std::function<book::Session*()> session;
    /// The code selected in the chart; empty for none.
    std::function<std::string()> selected_code;
    /// Posts and gives the voucher's number. What it throws is shown at the foot.
    std::function<int(const book::Voucher&)> post;
    /// The focus leaves the account's box: `OnAccountLeft` is to be called once it has arrived, but
    /// not when it has left the program.
    std::function<void()> account_left;
    std::chrono::year_month_day today;
  };

  /// Chooser and user must outlive the view.
  VoucherView(Plan plan, AccountChooser& chooser, viewkit::UserPort& user);

  /// In the order of the Tab key: date, summary, account, amounts, and last what is seldom needed,
  /// whatever stands where.
  [[nodiscard]] const viewkit::ControlList& Controls() const { return controls_; }
  [[nodiscard]] const viewkit::TextBox& AccountBox() const { return code_; }
  [[nodiscard]] const viewkit::ListView& Lines() const { return list_; }
  /// Puts the controls where they belong in a window of this size (twips).
  void Resize(int width, int height);
  /// The font that sums are measured in, and how high boxes are; it must outlive the view, or be
  /// replaced.
  void SetMeasure(const viewkit::TextMeasure& measure);
  /// Of the answers at the foot: what was refused, and what has been done.
  void SetAnswerColors(viewkit::Color refused, viewkit::Color done);

  /// Focus to where a voucher begins, or to the next entry's account.
  void FocusFirst();
  /// What the Enter key does, wherever the focus is.
  void Enter();
  /// The button that Enter clicks: the one that has the focus, or that which adds the line.
  [[nodiscard]] const viewkit::CommandButton& DefaultButton() const;
  /// A key of the focused control, before the control gets it; true when it is used up.
  [[nodiscard]] bool UseKey(viewkit::Key key, viewkit::Modifiers modifiers);
  /// The same for a character that is typed.
  [[nodiscard]] bool UseCharacter(char32_t character);
  /// The user has gone on from the account's box, unless to what belongs to it.
  void OnAccountLeft();
  /// The picker has closed; no codes when nothing was picked.
  void Picked(const std::vector<std::string>& codes);

  /// Takes the lines over as those of a new voucher, when the user gives up what stands there.
  void Take(const book::Voucher& voucher);
  [[nodiscard]] bool HasLines() const { return !lines_.empty(); }
  [[nodiscard]] bool HasChosenLine() const { return list_.FirstSelected() != 0; }
  void EditChosen();
  void RemoveChosen();
  void Post();
  /// Empties the voucher, when the user is sure.
  void AskClear();
  /// Asks whether what has not been posted may go; true, without a word, when there is nothing.
  [[nodiscard]] bool MayForget(const std::string& question);
  /// The book closes: its lines go.
  void ForgetBook();

 private:
  struct Line {
    book::Entry entry;
    PostingAccount account;
    /// Picked, but without an amount yet.
    [[nodiscard]] bool Open() const { return entry.debit == 0 && entry.credit == 0; }
  };

  void MakeControls();
  void Listen();
  template <class Body>
  void Trapped(Body&& body);
  void FocusArrived(viewkit::Control& control);

  int ArrangeHead(int top, int line, int width);
  int ArrangeEntry(int top, int line, int width);
  void ArrangeFoot(int top, int line, int width);
  void ArrangeSums();
  void FitColumns(int list_width);

  void OnEnter();
  [[nodiscard]] viewkit::CommandButton* FocusedButton() const;
  /// Where Enter leads from the focused box; null when it ends the entry.
  [[nodiscard]] viewkit::Control* NextBox();
  void OnRange();
  void OnListFocus(bool focused);
  void ShowAccount();
  /// False, and the user knows why, when there is no account.
  bool ResolveAccount();
  void TakeSelected();
  void AddLine();
  /// A line for each account, whose amounts are still to be entered.
  void AddAccounts(const std::vector<PostingAccount>& accounts);
  void EditLine(std::size_t row);
  void EditNew();
  /// The next line without an amount, or none.
  [[nodiscard]] std::optional<std::size_t> OpenLine() const;
  [[nodiscard]] std::optional<Line> ReadLine();
  /// The line that the boxes hold, as it was, while its account is the same; null for none.
  [[nodiscard]] const book::Entry* EditedEntry() const;
  void KeepUnshown(book::Entry& entry) const;
  /// Nothing, and the user knows why, when the box holds no amount.
  [[nodiscard]] std::optional<std::int64_t> ReadAmount(viewkit::TextBox& box, const char* side);
  /// The boxes of foreign currency and quantity are there for accounts that are kept in them.
  void ShowForeign();
  int ArrangeForeign(int top, int line, int width);
  /// What the boxes hold, for the account; nothing, and the user knows why, when it is no number.
  [[nodiscard]] std::optional<double> ReadNumber(viewkit::TextBox& box, const char* name);
  /// Works out the third of foreign amount, rate and amount: the amount, or when that has been
  /// typed last the rate. False, and the user knows why, when one of them is no number.
  bool WorkOut();
  bool ReadForeign(book::Entry& entry);
  void FillForeign(const book::Entry& entry);
  [[nodiscard]] bool InForeign() const;
  /// Where Enter leads from the account or one of these boxes.
  [[nodiscard]] viewkit::Control& NextOfForeign();
  /// Puts the amount into the boxes that the other entries lack.
  void Balance();
  void PostVoucher();
  [[nodiscard]] book::Voucher ReadVoucher() const;
  void Clear();
  void ShowLines();
  void ShowSums();
  /// A short answer at the foot, red when it is a refusal; the focus goes to `box` if there is one.
  void Answer(const std::string& text, bool refusal, viewkit::Control* box = nullptr);

  Plan plan_;
  viewkit::UserPort& user_;
  const viewkit::TextMeasure* measure_ = &viewkit::PlainTextMeasure();
  viewkit::Color refused_color_ = viewkit::color::kDefault;
  viewkit::Color done_color_ = viewkit::color::kDefault;
  int width_ = 0;
  int height_ = 0;

  viewkit::Label date_label_{"Lbl", 0};
  viewkit::DTPicker date_{"DTP"};
  viewkit::Label summary_label_{"Lbl", 1};
  viewkit::TextBox summary_{"Txt", 0};
  viewkit::Label code_label_{"Lbl", 2};
  viewkit::TextBox code_{"Txt", 1};
  viewkit::CommandButton drop_{"Cmd", 0};
  viewkit::Label name_{"Lbl", 3};
  viewkit::Label debit_label_{"Lbl", 4};
  viewkit::TextBox debit_{"Txt", 2};
  viewkit::Label credit_label_{"Lbl", 5};
  viewkit::TextBox credit_{"Txt", 3};
  viewkit::Label partner_label_{"Lbl", 6};
  viewkit::TextBox partner_{"Txt", 4};
  viewkit::CommandButton add_{"Cmd", 1};
  viewkit::ListView list_{"Lv"};
  viewkit::Label list_frame_{"Lbl", 7};  // seen around the list while that has the focus
  viewkit::CommandButton remove_{"Cmd", 2};
  viewkit::CommandButton clear_{"Cmd", 3};
  viewkit::CommandButton post_{"Cmd", 4};
  viewkit::Label range_label_{"Lbl", 8};
  viewkit::ComboBox range_{viewkit::ComboBox::Style::kList, "Combo"};
  viewkit::TextBox range_codes_{"Txt", 5};
  viewkit::CommandButton several_{"Cmd", 5};
  viewkit::CommandButton take_{"Cmd", 6};
  viewkit::Label sums_{"Lbl", 9};
  viewkit::Label answer_{"Lbl", 10};
  viewkit::Label foreign_label_{"Lbl", 11};
  viewkit::TextBox foreign_{"Txt", 6};
  viewkit::Label rate_label_{"Lbl", 12};
  viewkit::TextBox rate_{"Txt", 7};
  viewkit::Label quantity_label_{"Lbl", 13};
  viewkit::TextBox quantity_{"Txt", 8};
  viewkit::ControlList controls_;

  AccountField field_;
  viewkit::Control* focus_ = nullptr;  // the one that had it last
  std::vector<Line> lines_;
  std::optional<std::size_t> edited_;  // the line that the boxes hold; none: a new one
  bool refusal_ = false;
  bool worked_out_ = true;  // nothing has been typed since the third of them was worked out
  bool by_rate_ = false;    // foreign amount or rate have been typed last, not the amount
  bool filling_ = false;    // the boxes are being set: no edit of the user
};

}  // namespace desk::views
