#pragma once

#include <functional>
#include <string>
#include <vector>

#include "book/journal/history.h"
#include "book/session/progress.h"
#include "book/session/session.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/grid/flex_grid.h"
#include "views/sheet.h"

namespace desk::views {

/// What happened to the accounts of a book: a row for each command, the newest first, and below
/// them what the chosen one has changed. From here any command can be undone that nothing later
/// forbids.
class HistoryView : public Sheet {
 public:
  /// Columns of the commands and of the changes.
  enum Column { kWhen, kWho, kWhat, kAccounts, kState, kColumns };
  enum DetailColumn { kAccount, kChange, kField, kBefore, kAfter, kDetailColumns };

  /// Runs work that may take long, with a title for users.
  using RunLong = std::function<void(const std::string& title,
                                     const std::function<void(const book::Progress&)>& work)>;

  /// Book and user must outlive the view. Throws what the book raises.
  HistoryView(book::Session& session, viewkit::UserPort& user, RunLong run_long);

  // Sheet
  [[nodiscard]] std::string Title() const override;
  void Resize(int width, int height) override;
  [[nodiscard]] std::vector<MenuItem> Menu() override;
  [[nodiscard]] bool UseKey(viewkit::Key key, viewkit::Modifiers modifiers) override;

  [[nodiscard]] viewkit::FlexGrid& Details() { return details_; }
  [[nodiscard]] viewkit::CommandButton& UndoButton() { return undo_; }

 private:
  void Read() override;
  void MakeGrids();
  void Load();
  void ShowDetails();
  void ShowButton();
  /// Null without one.
  [[nodiscard]] const book::HistoryEntry* Chosen() const;
  void UndoChosen();

  book::Session& session_;
  RunLong run_long_;
  std::vector<book::HistoryEntry> history_;
  std::int64_t shown_ = 0;  ///< the command whose changes stand below
  bool loading_ = false;

  viewkit::CommandButton undo_{"Cmd", 0};
  viewkit::CommandButton reload_{"Cmd", 1};
  viewkit::Label summary_{"Lbl", 0};
  viewkit::Label details_label_{"Lbl", 1};
  viewkit::FlexGrid details_{"VsDetail"};
};

}  // namespace desk::views
