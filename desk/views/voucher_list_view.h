#pragma once

#include <optional>
#include <string>
#include <vector>

#include "book/ledger/vouchers.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/text_box.h"
#include "views/sheet.h"
#include "views/voucher_actions.h"
#include "views/voucher_lines.h"

namespace desk::views {

/// The posted vouchers, searched by what their lines hold, with the lines of the chosen one below.
class VoucherListView : public Sheet {
 public:
  enum Column { kDate, kNumber, kSummary, kTotal, kPreparedBy, kColumns };
  /// No more are listed; who wants others searches.
  static constexpr int kMax = 2000;

  /// Book and user must outlive the view. Throws what the book raises.
  VoucherListView(book::Session& session, viewkit::UserPort& user, VoucherActions::Calls calls);

  // Sheet
  [[nodiscard]] std::string Title() const override { return "凭证查询"; }
  [[nodiscard]] std::string Subtitle() const override { return sought_; }
  void Resize(int width, int height) override;
  [[nodiscard]] std::vector<MenuItem> Menu() override;
  [[nodiscard]] bool UseKey(viewkit::Key key, viewkit::Modifiers modifiers) override;

 private:
  void Read() override;
  void MakeControls();
  void ArrangeSearch(int width);
  [[nodiscard]] book::VoucherSearch ReadSearch() const;
  void Search();
  void Load();
  void ShowHeads(int row);
  void ShowLines();
  void ClearSearch();
  [[nodiscard]] std::optional<book::VoucherKey> Chosen() const;
  template <class Action>
  void OnChosen(Action&& action);
  void Open();
  void Copy();
  void Reverse();
  [[nodiscard]] bool InSearch() const;

  book::Session& session_;
  VoucherActions actions_;
  book::VoucherSearch search_;
  std::string sought_;
  std::vector<book::VoucherHead> heads_;

  viewkit::Label date_label_{"Lbl", 0};
  viewkit::TextBox first_date_{"Txt", 0};
  viewkit::Label last_label_{"Lbl", 1};
  viewkit::TextBox last_date_{"Txt", 1};
  viewkit::Label code_label_{"Lbl", 2};
  viewkit::TextBox code_{"Txt", 2};
  viewkit::Label text_label_{"Lbl", 3};
  viewkit::TextBox text_{"Txt", 3};
  viewkit::Label amount_label_{"Lbl", 4};
  viewkit::TextBox least_{"Txt", 4};
  viewkit::Label most_label_{"Lbl", 5};
  viewkit::TextBox most_{"Txt", 5};
  viewkit::CommandButton find_{"Cmd", 0};
  viewkit::CommandButton clear_{"Cmd", 1};
  viewkit::FlexGrid lines_grid_{"VsLines"};
  VoucherLines lines_{lines_grid_};
  viewkit::Label note_{"Lbl", 6};
  viewkit::CommandButton open_{"Cmd", 2};
  viewkit::CommandButton copy_{"Cmd", 3};
  viewkit::CommandButton reverse_{"Cmd", 4};
};

}  // namespace desk::views
