#include "views/preview_dialog.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "host/report.h"
#include "host/row_set.h"
#include "views/caption_text.h"

namespace desk::views {

namespace form = viewkit::form;

namespace {

constexpr int kLabelWidth = 1170;  // all in twips
constexpr int kListHeight = 4800;
constexpr int kScrollBar = 300;

}  // namespace

PreviewDialog::PreviewDialog(const char* name, Plan plan, LongRunner run)
    : FormDialog(name), plan_(std::move(plan)), run_(std::move(run)) {
  SetCaption(plan_.caption);
}

int PreviewDialog::FormWidth() const {
  int width = kScrollBar;
  for (const Column& column : plan_.columns) width += column.width;
  return width;
}

form::Rows PreviewDialog::FormRows() const {
  return {.left = form::kMargin,
          .top = form::kMargin,
          .label_width = kLabelWidth,
          .field_width = FormWidth() - kLabelWidth};
}

void PreviewDialog::PutRest() {
  int top = form::kMargin + plan_.form_rows * form::kRowPitch;
  MakeTextList(list_, plan_.columns, "预览");
  for (int col = 0; col < list_.Cols(); ++col) {
    list_.SetFixedAlignment(col, viewkit::Alignment::kLeftCenter);
  }
  PutList(list_, {form::kMargin, top, FormWidth(), kListHeight});
  top += kListHeight + form::kGap;
  Put(status_, {form::kMargin, top, FormWidth(), form::kBoxHeight});
  top += form::kBoxHeight + form::kGap;
  if (plan_.offers_only_bad) {
    only_bad_.SetCaption("只看有问题的(&W)");
    Put(only_bad_, {form::kMargin, top + (form::kButtonHeight - form::kBoxHeight) / 2, 2400,
                    form::kBoxHeight});
    only_bad_.Clicked.Add([this] { FillList(); });
  }
  PutButtons(plan_.action, FormWidth() + 2 * form::kMargin, top);
}

void PreviewDialog::Show(Preview preview) {
  preview_ = std::move(preview);
  AcceptButton().SetEnabled(preview_.why_not.empty());
  SetStatus(preview_.why_not.empty() ? preview_.summary : preview_.why_not);
  only_bad_.SetEnabled(std::ranges::any_of(preview_.rows, &Row::bad));
  FillList();
}

void PreviewDialog::SetStatus(const std::string& text) {
  status_.SetCaption(EscapedCaption(text));
}

void PreviewDialog::FillList() {
  const bool only_bad = only_bad_.Enabled() && only_bad_.Value() == viewkit::CheckBox::kChecked;
  host::RowSet rows(plan_.columns.size());
  listed_.clear();
  for (std::size_t i = 0; i < preview_.rows.size(); ++i) {
    const Row& row = preview_.rows[i];
    if (only_bad && !row.bad) continue;
    listed_.push_back(i);
    for (const std::string& cell : row.cells) rows.AppendText(cell);
  }
  list_.BeginUpdate();
  const int top = list_.TopRow();
  const int row = list_.Row();
  list_.LoadRows(std::move(rows));
  if (row < list_.Rows()) list_.SetRow(row);
  for (std::size_t i = 0; i < listed_.size(); ++i) {
    if (!preview_.rows[listed_[i]].bad) continue;
    list_.SetCellFontBold(list_.FixedRows() + static_cast<int>(i), list_.Cols() - 1, true);
  }
  list_.SetTopRow(top);
  list_.EndUpdate();
}

std::size_t PreviewDialog::PositionOf(int list_row) const {
  return listed_.at(static_cast<std::size_t>(list_row - list_.FixedRows()));
}

void PreviewDialog::Accept() {
  try {
    run_(plan_.title, [this](const book::Progress& progress) { Carry(progress); });
    done_ = true;
  } catch (const std::exception& error) {
    Renew();
    SetStatus(host::ErrorText(error));
    return;
  }
  Close();
}

}  // namespace desk::views
