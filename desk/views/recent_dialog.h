#pragma once

#include <functional>
#include <string>
#include <vector>

#include "book/host/recent_books.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/label.h"
#include "viewkit/grid/flex_grid.h"

namespace desk::views {

namespace viewkit = tavrix::viewkit;

/// The books that were opened last: one of them is opened, pinned, or taken off the list.
class RecentDialog : public viewkit::DialogModel {
 public:
  enum Column { kPinned, kName, kPlace, kState, kColumns };
  struct Calls {
    /// As users know a book.
    std::function<std::string(const std::string& place)> name;
    /// False for one that has gone.
    std::function<bool(const std::string& place)> may_be_there;
  };
  /// The books must outlive it.
  RecentDialog(book::RecentBooks& books, Calls calls);

  /// The place of the book that the user wants to open; empty for none.
  [[nodiscard]] const std::string& Wanted() const { return wanted_; }

 private:
  [[nodiscard]] viewkit::Control* FirstFocus() override { return &list_; }
  void MakeControls();
  void ShowRows(int row);
  void ShowRow();
  [[nodiscard]] const book::RecentBooks::Entry* Chosen() const;
  void Open();
  void Pin();
  void Remove();

  book::RecentBooks& books_;
  Calls calls_;
  std::vector<bool> there_;  // of each book
  std::string wanted_;

  viewkit::FlexGrid list_{"Vs"};
  viewkit::Label note_{"Lbl", 0};
  viewkit::CommandButton open_{"Cmd", 0};
  viewkit::CommandButton pin_{"Cmd", 1};
  viewkit::CommandButton remove_{"Cmd", 2};
  viewkit::CommandButton close_{"Cmd", 3};
};

}  // namespace desk::views
