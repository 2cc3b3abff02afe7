// How the layout of the columns reaches the grid, and what the user does to it.

#include "viewkit/layout/m_mode.h"
#include "views/default_layout.h"
#include "views/layout_dialog.h"
#include "views/trial_balance_view.h"

namespace desk::views {

using viewkit::CheckBox;

void TrialBalanceView::ApplyLayout() {
  viewkit::ApplyVsLayout(layout_path_, grid_, false, *system_);
  // Its totals go by all rows.
  if (ChosenLevel() == book::kAllAccounts) Load();
  DressTotals();
  ShowByFirstLevel();
}

/// The box says what the layout does, whoever has written it.
void TrialBalanceView::ShowByFirstLevel() {
  const LayoutChoice choice = ReadLayout(layout_path_, grid_, *system_);
  filling_ = true;
  const bool grouped = choice.columns.at(kFirstLevel).group;
  by_first_level_.SetValue(grouped ? CheckBox::kChecked : CheckBox::kUnchecked);
  filling_ = false;
}

void TrialBalanceView::SetByFirstLevel(bool wanted) {
  viewkit::SaveVsLayout(layout_path_, grid_, false, *system_);
  const LayoutChoice before = ReadLayout(layout_path_, grid_, *system_);
  LayoutChoice after = before;
  ColumnChoice& column = after.columns.at(kFirstLevel);
  column.group = wanted;
  column.shown = wanted;
  WriteLayout(layout_path_, grid_, before, after, *system_);
  ApplyLayout();
}

void TrialBalanceView::AskLayout() {
  // The file holds what the mouse has changed before the dialog adds to it.
  viewkit::SaveVsLayout(layout_path_, grid_, false, *system_);
  const LayoutChoice before = ReadLayout(layout_path_, grid_, *system_);
  LayoutDialog dialog({.subject = Title(), .has_defaults = true}, before, User());
  User().ShowModal(dialog);
  if (dialog.Result() == LayoutDialog::Outcome::kDefaults) return RestoreDefaults();
  if (dialog.Result() != LayoutDialog::Outcome::kAccepted) return;
  WriteLayout(layout_path_, grid_, before, dialog.Choice(), *system_);
  // An order of the rows that is wanted no longer goes with the rows alone.
  Load();
  ApplyLayout();
}

void TrialBalanceView::RestoreDefaults() {
  WriteDefaultLayout(DefaultLayout::kTrialBalance, layout_path_);
  ResetColumns();
  Load();
  ApplyLayout();
}

}  // namespace desk::views
