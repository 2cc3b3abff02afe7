#include "views/import_dialog.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include "book/exchange/csv.h"
#include "host/flag_scope.h"
#include "host/report.h"
#include "host/row_set.h"
#include "host/text.h"
#include "views/column_fit.h"

namespace desk::views {

using book::AccountField;
using book::Encoding;
using book::ImportState;
using viewkit::CheckBox;

namespace {

struct EncodingChoice {
  Encoding encoding;
  const char* text;
};
constexpr std::array kEncodings = {EncodingChoice{Encoding::kUtf8, "UTF-8"},
                                   EncodingChoice{Encoding::kGb18030, "GB18030（GBK）"},
                                   EncodingChoice{Encoding::kUtf16Little, "UTF-16"},
                                   EncodingChoice{Encoding::kUtf16Big, "UTF-16 BE"}};

constexpr std::array kSeparatorTexts = {"逗号 ,", "分号 ;", "制表符"};
constexpr std::array kStateTexts = {"新增", "修改", "不变", "拒绝"};

bool IsSet(const CheckBox& box) {
  return box.Value() == CheckBox::kChecked;
}
void Check(CheckBox& box, bool set) {
  box.SetValue(set ? CheckBox::kChecked : CheckBox::kUnchecked);
}

/// "1,500".
std::string Counted(std::size_t number) {
  std::string text = std::to_string(number);
  constexpr std::size_t kGroup = 3;
  for (std::size_t at = text.size(); at > kGroup; at -= kGroup) text.insert(at - kGroup, ",");
  return text;
}

/// A text of several lines in one.
std::string OnOneLine(std::string text) {
  for (char& unit : text) {
    if (unit == '\r' || unit == '\n' || unit == '\t') unit = ' ';
  }
  return text;
}

/// The first text of a column below the header.
std::string ExampleOf(const book::SourceTable& table, std::size_t column, std::size_t first) {
  for (std::size_t row = first; row < table.rows.size(); ++row) {
    const auto& cells = table.rows[row].cells;
    if (column < cells.size() && !cells[column].empty()) return OnOneLine(cells[column]);
  }
  return {};
}

}  // namespace

ImportDialog::ImportDialog(Plan plan, book::ImportSource source, viewkit::UserPort& user)
    : FormDialog("DeskImport"), plan_(std::move(plan)), source_(std::move(source)), user_(user) {
  SetCaption("导入科目 - " + plan_.file);
  Place();
  meaning_.AddItem("（不导入）", -1);
  for (const book::FieldInfo& info : book::Fields()) {
    meaning_.AddItem(std::string(info.title), static_cast<int>(book::IndexOf(info.field)));
  }
  Propose(source_.Proposed());
  FillReading();
  ShowColumns();
  Listen();
}

void ImportDialog::FillReading() {
  const host::FlagScope showing(showing_);
  encoding_.Clear();
  separator_.Clear();
  encoding_.SetEnabled(!source_.IsSheets());
  if (source_.IsSheets()) {
    separator_label_->SetCaption("工作表(&S)");
    for (const std::string& name : source_.Sheets()) separator_.AddItem(name);
    separator_.SetListIndex(static_cast<int>(source_.Sheet()));
  } else {
    for (const EncodingChoice& choice : kEncodings) {
      encoding_.AddItem(choice.text);
      if (choice.encoding == source_.TextEncoding())
        encoding_.SetListIndex(encoding_.ListCount() - 1);
    }
    for (std::size_t i = 0; i < std::size(book::kSeparators); ++i) {
      separator_.AddItem(kSeparatorTexts.at(i));
      if (book::kSeparators[i] == source_.Separator()) separator_.SetListIndex(static_cast<int>(i));
    }
  }
  rule_.SetText(shown_.rule);
  rule_.SetEnabled(shown_.empty_book);
  const auto& rows = source_.Table().rows;
  const int number = rows.empty() ? 1 : rows[source_.HeaderPlace()].number;
  header_.SetCaption("第 " + std::to_string(number) + " 行是标题(&H)");
  Check(header_, options_.header.has_value());
}

/// A book without accounts keeps its rule where the codes follow it.
void ImportDialog::Propose(book::ImportOptions options) {
  options_ = std::move(options);
  options_.fill_mnemonics = IsSet(mnemonics_);
  const std::string rule = std::exchange(options_.code_rule, {});
  Judge();
  if (!shown_.empty_book || rule.empty()) return;
  const std::size_t refused = shown_.Count(ImportState::kRefuse);
  if (refused == 0) return;
  options_.code_rule = rule;
  Judge();
  if (shown_.Count(ImportState::kRefuse) < refused) return;
  options_.code_rule.clear();
  Judge();
}

void ImportDialog::ReadAgain() {
  if (showing_) return;
  const bool good = Trapped([this] {
    if (source_.IsSheets()) {
      source_.ReadSheet(static_cast<std::size_t>(std::max(separator_.ListIndex(), 0)));
    } else {
      const int separator = separator_.ListIndex();  // none, for one that is not offered
      source_.ReadText(
          kEncodings.at(static_cast<std::size_t>(std::max(encoding_.ListIndex(), 0))).encoding,
          separator < 0 ? source_.Separator() : book::kSeparators[separator]);
    }
    Propose(source_.Proposed());
  });
  FillReading();
  if (good) ShowColumns();
}

void ImportDialog::Listen() {
  encoding_.Changed.Add([this] { ReadAgain(); });
  separator_.Changed.Add([this] { ReadAgain(); });
  rule_.Changed.Add([this] {
    if (showing_) return;
    options_.code_rule = rule_.Text();
    Judge();
  });
  header_.Clicked.Add([this] {
    if (showing_) return;
    Propose(source_.ProposedWith(IsSet(header_)));
    ShowColumns();
  });
  mnemonics_.Clicked.Add([this] {
    options_.fill_mnemonics = IsSet(mnemonics_);
    Judge();
  });
  columns_.RowColChange.Add([this] { ShowMeaning(); });
  columns_.DoubleClick.Add([this] { meaning_.SetFocus(); });
  columns_.KeyDown.Add([this](viewkit::Key key, viewkit::Modifiers) {
    constexpr auto kF2 = static_cast<viewkit::Key>(0x71);
    if (key == kF2) meaning_.SetFocus();
  });
  meaning_.Changed.Add([this] { TakeMeaning(); });
  problems_.Clicked.Add([this] { ShowLines(); });
  skip_.Clicked.Add([this] { Enable(); });
}

void ImportDialog::ShowColumns() {
  const book::SourceTable& table = source_.Table();
  const std::size_t first = options_.header ? *options_.header + 1 : 0;
  const int row = columns_.Row();
  const book::SourceRow header =
      options_.header ? book::HeaderAt(table, *options_.header) : book::SourceRow();
  host::RowSet rows(static_cast<std::size_t>(columns_.Cols()));
  for (std::size_t column = 0; column < table.columns; ++column) {
    std::string name = book::LetterOf(column);
    if (column < header.cells.size()) name += "  " + OnOneLine(header.cells[column]);
    const auto field = options_.columns.FieldAt(column);
    rows.AppendText(name);
    rows.AppendText(ExampleOf(table, column, first));
    rows.AppendText(field ? book::InfoOf(*field).title : "（不导入）");
  }
  columns_.LoadRows(std::move(rows));
  if (columns_.Rows() > columns_.FixedRows()) {
    columns_.SetRow(std::clamp(row, columns_.FixedRows(), columns_.Rows() - 1));
  }
  ShowMeaning();
}

void ImportDialog::ShowMeaning() {
  const host::FlagScope showing(showing_);
  const int row = columns_.Row() - columns_.FixedRows();
  meaning_.SetEnabled(row >= 0);
  if (row < 0) return;
  const auto field = options_.columns.FieldAt(static_cast<std::size_t>(row));
  meaning_.SetText(field ? book::InfoOf(*field).title : std::string_view("（不导入）"));
}

void ImportDialog::TakeMeaning() {
  const int row = columns_.Row() - columns_.FixedRows();
  if (showing_ || row < 0 || meaning_.ListIndex() < 0) return;
  const int data = meaning_.ItemData(meaning_.ListIndex());
  std::optional<AccountField> field;
  if (data >= 0) field = static_cast<AccountField>(data);
  options_.columns.Set(static_cast<std::size_t>(row), field);
  Judge();
  ShowColumns();
}

void ImportDialog::Judge() {
  const viewkit::WaitCursor wait(user_);
  shown_ = book::PlanImport(plan_.session, source_.Table(), options_);
  ShowLines();
  summary_.SetCaption(SummaryOf(shown_));
  Enable();
}

/// All lines, or the rest of them where that is said.
void ImportDialog::Enable() {
  const bool refused = shown_.Count(ImportState::kRefuse) > 0;
  const bool any = shown_.Count(ImportState::kAdd) + shown_.Count(ImportState::kChange) > 0;
  problems_.SetEnabled(refused);
  skip_.SetEnabled(refused && any);
  AcceptButton().SetEnabled(any && (!refused || IsSet(skip_)));
}

void ImportDialog::ShowLines() {
  const bool problems = IsSet(problems_);
  host::RowSet rows(static_cast<std::size_t>(lines_.Cols()));
  for (const book::ImportLine& line : shown_.lines) {
    if (problems && line.state != ImportState::kRefuse) continue;
    rows.AppendInteger(line.number);
    rows.AppendText(kStateTexts.at(static_cast<std::size_t>(line.state)));
    rows.AppendText(line.account.Code());
    rows.AppendText(OnOneLine(line.account.Text(AccountField::kName)));
    rows.AppendText(OnOneLine(book::NoteOf(line)));
  }
  lines_.LoadRows(std::move(rows));
  lines_.SetColWidth(kNote, kNoteWidth);
  for (const int col : {kCode, kNote}) WidenToFit(lines_, col);
  if (lines_.Rows() <= lines_.FixedRows()) return;
  // The first line that somebody has to look at.
  const auto refused =
      std::ranges::find(shown_.lines, ImportState::kRefuse, &book::ImportLine::state);
  const bool jumps = !problems && refused != shown_.lines.end();
  const int place = jumps ? static_cast<int>(refused - shown_.lines.begin()) : 0;
  lines_.SetRow(lines_.FixedRows() + place);
  lines_.SetTopRow(lines_.Row() - 1);
}

std::string ImportDialog::SummaryOf(const book::ImportPlan& plan) {
  std::string text;
  for (std::size_t state = 0; state < kStateTexts.size(); ++state) {
    text += (text.empty() ? "" : "，") + std::string(kStateTexts.at(state)) + " " +
            Counted(plan.Count(static_cast<ImportState>(state)));
  }
  return text;
}

bool ImportDialog::Trapped(const std::function<void()>& body) {
  try {
    body();
    return true;
  } catch (const std::exception& error) {
    static_cast<void>(user_.Ask(host::ErrorText(error), host::kPromptTitle,
                                viewkit::UserPort::Icon::kWarning,
                                viewkit::UserPort::Buttons::kOk));
    return false;
  }
}

void ImportDialog::Accept() {
  done_ = Trapped([this] { plan_.run(source_.Table(), options_, shown_); });
  if (done_) {
    Close();
    return;
  }
  // Others may have changed the book: what is shown is to be true again.
  static_cast<void>(Trapped([this] { Judge(); }));
}

}  // namespace desk::views
