#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "book/session/progress.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/text_box.h"
#include "views/form_dialog.h"

namespace desk::views {

/// Does work that may take long, and shows how far it is; throws what the work throws.
using LongRunner = std::function<void(const std::string& title,
                                      const std::function<void(const book::Progress&)>&)>;

/// A dialog for a command that shows, while the user types, what it would do: a form of a few rows,
/// the list of what changes and why something cannot, a line that sums it up, and the button that
/// carries it out, grey as long as it cannot.
class PreviewDialog : public FormDialog {
 public:
  /// The command has been carried out.
  [[nodiscard]] bool Done() const { return done_; }

 protected:
  using Column = TextColumn;
  struct Row {
    std::vector<std::string> cells;
    bool bad = false;  ///< it hinders
  };
  struct Preview {
    std::vector<Row> rows = {};
    std::string summary = {};  ///< what would happen
    std::string why_not = {};  ///< why it cannot; empty when it can
  };
  struct Plan {
    std::string caption;
    std::string action;  ///< caption of the button that carries it out
    std::string title;   ///< of the work, while it is done
    int form_rows = 1;
    std::span<const Column> columns;
    bool offers_only_bad = true;  ///< there is a box to list only what hinders
  };

  PreviewDialog(const char* name, Plan plan, LongRunner run);

  [[nodiscard]] viewkit::form::Rows FormRows() const;
  [[nodiscard]] int FormWidth() const;
  /// List, summary and buttons, below the form: called when the form is there.
  void PutRest();
  void Show(Preview preview);
  [[nodiscard]] viewkit::FlexGrid& List() { return list_; }
  /// The previewed row that a row of the list shows.
  [[nodiscard]] std::size_t PositionOf(int list_row) const;

  /// Carries out what was shown. What it throws is said, and the preview made anew.
  virtual void Carry(const book::Progress& progress) = 0;
  /// Makes the preview anew from the book.
  virtual void Renew() = 0;

 private:
  void Accept() override;
  void FillList();
  void SetStatus(const std::string& text);

  Plan plan_;
  LongRunner run_;
  Preview preview_;
  std::vector<std::size_t> listed_;  // positions of the rows in the list
  bool done_ = false;

  viewkit::FlexGrid list_{"Vs"};
  viewkit::CheckBox only_bad_{"Chk", 0};
  viewkit::Label status_{"Lbl", 9};
};

}  // namespace desk::views
