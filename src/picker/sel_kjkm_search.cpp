#include "host/grid_update.h"
#include "host/text.h"
#include "picker/sel_kjkm_impl.h"

namespace tavrix::picker {

namespace {

void SetHidden(viewkit::FlexGrid& grid, int row, bool hidden) {
  if (grid.RowHidden(row) != hidden) grid.SetRowHidden(row, hidden);
}

}  // namespace

void selKjkm::OnSearchMode() noexcept {
  Trapped([this] {
    SearchBox1_.SetFilterMode(Check_.Value() == viewkit::CheckBox::kChecked);
    SearchBox1_.Search();
  });
}

int selKjkm::FirstMatch() {
  row_texts_.Update(Vs_);
  return row_texts_.Find(host::LowerCase(SearchBox1_.Text()), 0);
}

void selKjkm::OnSearch() noexcept {
  Trapped([this] {
    if (Vs_.Cols() < 1) return;
    int match = FirstMatch();
    const int fixed = Vs_.FixedRows();
    const int rows = Vs_.Rows() - fixed;
    const bool filter = Check_.Value() == viewkit::CheckBox::kChecked;
    const host::GridUpdate update(Vs_);
    if (!filter) {
      for (int row = 0; row < rows; ++row) SetHidden(Vs_, fixed + row, false);
      if (match < 0) return;
      Vs_.SetRow(fixed + match);
      if (!Vs_.IsInView(fixed + match)) Vs_.SetTopRow(fixed + match);
      return;
    }
    const std::string wanted = host::LowerCase(SearchBox1_.Text());
    for (int row = 0; row < rows; ++row) {
      const bool matches = row == match;
      SetHidden(Vs_, fixed + row, !matches);
      if (matches) match = row_texts_.Find(wanted, row + 1);
    }
  });
}

}  // namespace tavrix::picker
