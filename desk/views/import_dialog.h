#pragma once

#include <functional>
#include <string>

#include "book/exchange/import_source.h"
#include "book/session/session.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/ports.h"
#include "views/form_dialog.h"

namespace desk::views {

/// The dialog between a file and the chart: how the file is read, what its columns mean, and line
/// by line what an import would do. F2 in the list of columns leads to the box with the meanings.
/// Where lines are refused nothing is imported unless the user has said that they are to be
/// skipped.
class ImportDialog : public FormDialog {
 public:
  struct Plan {
    std::string file = {};  ///< its name, for the caption
    book::Session& session;
    /// Carries the import out; what it throws is told, and the dialog stays.
    std::function<void(const book::SourceTable& table, const book::ImportOptions& options,
                       const book::ImportPlan& plan)>
        run = {};
  };
  /// What the book or the file throws while it is read passes through.
  ImportDialog(Plan plan, book::ImportSource source, viewkit::UserPort& user);

  /// Whether something has been imported.
  [[nodiscard]] bool Done() const { return done_; }
  /// What would happen now.
  [[nodiscard]] const book::ImportPlan& Shown() const { return shown_; }
  /// "新增 1,500，修改 3，不变 10，拒绝 2".
  [[nodiscard]] static std::string SummaryOf(const book::ImportPlan& plan);

 private:
  [[nodiscard]] viewkit::Control* FirstFocus() override { return &lines_; }
  enum LineColumn { kNumber, kResult, kCode, kName, kNote };
  static constexpr int kNoteWidth = 3600;  ///< twips; the least of the last column

  void Place();
  void PlaceReading(int top);
  void PlaceColumns(int top);
  void PlaceLines(int top);
  void Listen();
  void FillReading();
  void Propose(book::ImportOptions options);
  /// The file is read otherwise: everything is proposed anew.
  void ReadAgain();
  void ShowColumns();
  void ShowMeaning();
  void TakeMeaning();
  /// Judges the lines anew and shows them.
  void Judge();
  void Enable();
  void ShowLines();
  void Accept() override;
  /// Runs `body`; what it throws is told.
  bool Trapped(const std::function<void()>& body);

  Plan plan_;
  book::ImportSource source_;
  viewkit::UserPort& user_;
  book::ImportOptions options_;
  book::ImportPlan shown_;
  bool showing_ = false;  // the boxes are being filled: no edit of the user
  bool done_ = false;

  viewkit::ComboBox encoding_{viewkit::ComboBox::Style::kList, "Combo", 0};
  viewkit::Label* separator_label_ = nullptr;
  viewkit::ComboBox separator_{viewkit::ComboBox::Style::kList, "Combo", 1};
  viewkit::TextBox rule_{"Txt", 0};
  viewkit::CheckBox header_{"Chk", 0};
  viewkit::CheckBox mnemonics_{"Chk", 1};
  viewkit::FlexGrid columns_{"Columns"};
  viewkit::ComboBox meaning_{viewkit::ComboBox::Style::kList, "Combo", 2};
  viewkit::CheckBox problems_{"Chk", 2};
  viewkit::FlexGrid lines_{"Lines"};
  viewkit::Label summary_{"Lbl", 4};
  viewkit::CheckBox skip_{"Chk", 3};
};

}  // namespace desk::views
