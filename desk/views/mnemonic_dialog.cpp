#include "views/mnemonic_dialog.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "book/ledger/mnemonic.h"
#include "host/flag_scope.h"
#include "host/report.h"
#include "host/row_set.h"
#include "host/text.h"
#include "viewkit/controls/form_rows.h"
#include "views/column_fit.h"

namespace desk::views {

using viewkit::CheckBox;
namespace form = viewkit::form;

namespace {

constexpr int kWidth = 8400;  // twips
constexpr int kInside = kWidth - 2 * form::kMargin;
constexpr int kListHeight = 4500;

enum ListColumn { kTakenColumn, kCodeColumn, kNameColumn, kKeptColumn, kWantedColumn, kColumns };

void Check(CheckBox& box, bool set) {
  box.SetValue(set ? CheckBox::kChecked : CheckBox::kUnchecked);
}
bool IsSet(const CheckBox& box) {
  return box.Value() == CheckBox::kChecked;
}

}  // namespace

MnemonicDialog::MnemonicDialog(std::vector<book::MnemonicAccount> accounts, viewkit::UserPort& user,
                               Write write)
    : FormDialog("DeskMnemonics"), user_(user), write_(std::move(write)) {
  for (book::MnemonicAccount& account : accounts) {
    Line line{.account = std::move(account), .wanted = {}, .taken = false};
    const bool without = line.account.mnemonic.empty();
    line.wanted = without ? book::ProposeMnemonic(line.account.name) : line.account.mnemonic;
    line.taken = without && !line.wanted.empty();
    lines_.push_back(std::move(line));
  }
  SetCaption("补助记码");
  Place();
  ShowLines();
  ShowBox();
  Listen();
}

void MnemonicDialog::Place() {
  int top = form::kMargin;
  all_.SetCaption("也列出已有助记码的科目(&A)");
  Put(all_, {form::kMargin, top, kInside, form::kBoxHeight});
  top += form::kRowPitch;
  constexpr TextColumn kHeads[] = {{"写入", 660, viewkit::Alignment::kCenterCenter},
                                   {"科目编码", 1350},
                                   {"科目名称", 3150},
                                   {"原助记码", 1290},
                                   {"新助记码", 1290}};
  MakeTextList(list_, kHeads, "科目");
  PutList(list_, {form::kMargin, top, kInside, kListHeight});
  top += kListHeight + form::kGap;
  constexpr int kLabel = 1350;
  constexpr int kBox = 2400;
  PutLabel("新助记码(&M)", {form::kMargin, top + 30, kLabel, form::kBoxHeight - 30});
  Put(box_, {form::kMargin + kLabel, top, kBox, form::kBoxHeight});
  taken_.SetCaption("写入(&W)");
  Put(taken_, {form::kMargin + kLabel + kBox + 2 * form::kGap, top, kLabel, form::kBoxHeight});
  top += form::kRowPitch + form::kGap;
  constexpr int kButtons = 2 * form::kButtonWidth + 2 * form::kGap;
  Put(count_, {form::kMargin, top + 75, kInside - kButtons, form::kBoxHeight - 30});
  PutButtons("确定", kWidth, top);
}

void MnemonicDialog::Listen() {
  all_.Clicked.Add([this] { ShowLines(); });
  list_.RowColChange.Add([this] { ShowBox(); });
  list_.DoubleClick.Add([this] { box_.SetFocus(); });
  list_.KeyDown.Add([this](viewkit::Key key, viewkit::Modifiers modifiers) {
    constexpr auto kF2 = static_cast<viewkit::Key>(0x71);
    if (key == kF2) box_.SetFocus();
    if (key == viewkit::Key::kSpace && !modifiers.control && !modifiers.alt) Toggle();
  });
  box_.Changed.Add([this] { TakeBox(); });
  taken_.Clicked.Add([this] {
    Line* line = Chosen();
    if (showing_ || line == nullptr) return;
    line->taken = IsSet(taken_);
    ShowLine(static_cast<std::size_t>(line - lines_.data()));
  });
}

void MnemonicDialog::ShowLines() {
  host::RowSet rows(kColumns);
  const Line* const chosen = Chosen();
  int row = list_.FixedRows();
  shown_.clear();
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (!IsSet(all_) && !line.account.mnemonic.empty()) continue;
    if (&line == chosen) row += static_cast<int>(shown_.size());
    shown_.push_back(i);
    rows.AppendText(line.taken ? "√" : "");
    rows.AppendText(line.account.code);
    rows.AppendText(line.account.name);
    rows.AppendText(line.account.mnemonic);
    rows.AppendText(line.wanted);
  }
  list_.LoadRows(std::move(rows));
  WidenToFit(list_, kCodeColumn);
  if (!shown_.empty()) {
    list_.SetRow(row);
    list_.ShowRow(row);
  }
  ShowBox();
  Count();
}

void MnemonicDialog::ShowLine(std::size_t position) {
  const auto place = std::ranges::find(shown_, position);
  if (place == shown_.end()) return;
  const int row = list_.FixedRows() + static_cast<int>(place - shown_.begin());
  list_.SetTextMatrix(row, kTakenColumn, lines_[position].taken ? "√" : "");
  list_.SetTextMatrix(row, kWantedColumn, lines_[position].wanted);
  Count();
}

MnemonicDialog::Line* MnemonicDialog::Chosen() {
  const int place = list_.Row() - list_.FixedRows();
  if (place < 0 || place >= static_cast<int>(shown_.size())) return nullptr;
  return &lines_[shown_[static_cast<std::size_t>(place)]];
}

void MnemonicDialog::ShowBox() {
  const host::FlagScope showing(showing_);
  const Line* line = Chosen();
  box_.SetEnabled(line != nullptr);
  taken_.SetEnabled(line != nullptr);
  box_.SetText(line != nullptr ? line->wanted : std::string());
  Check(taken_, line != nullptr && line->taken);
}

/// What is typed is wanted.
void MnemonicDialog::TakeBox() {
  Line* line = Chosen();
  if (showing_ || line == nullptr) return;
  line->wanted = host::Trimmed(box_.Text());
  line->taken = line->wanted != line->account.mnemonic;
  ShowLine(static_cast<std::size_t>(line - lines_.data()));
  const host::FlagScope showing(showing_);
  Check(taken_, line->taken);
}

void MnemonicDialog::Toggle() {
  if (taken_.Enabled()) taken_.Click();
}

/// Enter in the box goes on to the next account.
bool MnemonicDialog::MayEnter() {
  if (FocusControl() != &box_ || list_.Row() + 1 >= list_.Rows()) return true;
  list_.SetRow(list_.Row() + 1);
  list_.ShowRow(list_.Row());
  box_.SelectAll();
  return false;
}

bool MnemonicDialog::IsWanted(const Line& line) {
  return line.taken && line.wanted != line.account.mnemonic;
}

std::vector<book::NewMnemonic> MnemonicDialog::Wanted() const {
  std::vector<book::NewMnemonic> wanted;
  for (const Line& line : lines_) {
    if (IsWanted(line)) wanted.push_back({.account = line.account, .mnemonic = line.wanted});
  }
  return wanted;
}

void MnemonicDialog::Count() {
  const auto wanted = std::ranges::count_if(lines_, IsWanted);
  count_.SetCaption("列出 " + std::to_string(shown_.size()) + " 个科目，写入 " +
                    std::to_string(wanted) + " 个");
  AcceptButton().SetEnabled(wanted > 0);
}

void MnemonicDialog::Accept() {
  const std::vector<book::NewMnemonic> wanted = Wanted();
  const auto odd = std::ranges::find_if(wanted, [](const book::NewMnemonic& each) {
    return each.mnemonic.find('\'') != std::string::npos;
  });
  try {
    if (odd != wanted.end()) throw host::HostError("助记码中不能有单引号（'）：" + odd->mnemonic);
    write_(wanted);
    written_ = wanted.size();
    Close();
  } catch (const std::exception& error) {
    static_cast<void>(user_.Ask(host::ErrorText(error), host::kPromptTitle,
                                viewkit::UserPort::Icon::kWarning,
                                viewkit::UserPort::Buttons::kOk));
  }
}

}  // namespace desk::views
