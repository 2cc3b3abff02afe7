#include <string>

#include "editing/ledger_code.h"
#include "host/account.h"
#include "host/calls.h"
#include "host/text.h"
#include "maintenance/columns.h"
#include "maintenance/kjkm_impl.h"

namespace tavrix::maintenance {

namespace {

using viewkit::FlexGrid;
using viewkit::UserPort;

bool HasDataRows(const FlexGrid& grid) {
  return grid.Rows() > grid.FixedRows();
}
bool RowSelected(const FlexGrid& grid) {
  return grid.Row() >= grid.FixedRows();
}

/// Sub-accounts of `parent` on any level below it.
double CountBelow(host::SystemObject& system, const std::string& parent) {
  // "*" is Jet's wildcard here, while the usage checks and the delete write "%" for every database.
  const char* wildcard = host::DialectOf(system) == host::Dialect::kJet ? "*" : "%";
  return host::QueryCount(system, "select count(i_id) from gl_code where ccode like '" + parent +
                                      wildcard + "' and len(ccode)>" +
                                      std::to_string(host::TextLength(parent)));
}

/// The refusal that names the ledger table in which the account or one below it is used; null when
/// there is none.
const char* UsageRefusal(host::SystemObject& system, const std::string& code) {
  struct UsageCheck {
    const char* query;
    const char* refusal;
  };
  // "或及其下级" in the first text, "或其下级" in the others: the wording differs on purpose.
  static constexpr UsageCheck kChecks[] = {
      {"select count(i_id) from gl_accvouch where ccode like '",
       "该科目或及其下级已在凭证表中使用，不能删除！"},
      {"select count(i_id) from gl_accass where ccode like '",
       "该科目或其下级已在总帐辅助表中使用，不能删除！"},
      {"select count(i_id) from gl_accsum where ccode like '",
       "该科目或其下级已在总帐表中使用，不能删除！"},
  };
  for (const UsageCheck& check : kChecks) {
    if (host::QueryCount(system, check.query + code + "%'") > 0) return check.refusal;
  }
  return nullptr;
}

void ThrowIfFailed(const std::string& error) {
  if (!error.empty()) throw host::HostError(error);
}

}  // namespace

bool Kjkm::MoveRecord(std::string_view prefix, RecordMove move) {
  return Trapped(prefix, host::kCommandError,
                 [this, move] { (void)(Navigator().get()->*move)(CurrentGrid()); });
}

bool Kjkm::RecordTop() {
  return MoveRecord("RecordTop->", &host::GridNavigator::MoveTop);
}

bool Kjkm::RecordPrevious() {
  return MoveRecord("RecordPrevious->", &host::GridNavigator::MovePrevious);
}

bool Kjkm::RecordNext() {
  return MoveRecord("RecordNext->", &host::GridNavigator::MoveNext);
}

bool Kjkm::RecordBottom() {
  return MoveRecord("RecordBottom->", &host::GridNavigator::MoveBottom);
}

bool Kjkm::Find(const host::Value& pvData) {
  return Trapped("Find->", host::kCommandError,
                 [&] { return Navigator()->Find(CurrentGrid(), pvData); });
}

bool Kjkm::FindNext() {
  return Trapped("FindNext->", host::kCommandError,
                 [&] { return Navigator()->FindNext(CurrentGrid()); });
}

bool Kjkm::Filter(const host::Value& pvData) {
  return Trapped("Filter->", host::kCommandError,
                 [&] { return Navigator()->Filter(CurrentGrid(), pvData); });
}

std::shared_ptr<host::GridNavigator> Kjkm::Navigator() const {
  return host::Required(Running()->navigator, "GridNavigator");
}

bool Kjkm::FileNew() {
  return AddAccount("FileNew->", false);
}

bool Kjkm::FileNewNext() {
  return AddAccount("FileNewNext->", true);
}

bool Kjkm::AddAccount(std::string_view prefix, bool pnNewNext) {
  return Trapped(prefix, host::kCommandError, [&] {
    (void)Running();
    if (!RowSelected(CurrentGrid()) && HasDataRows(CurrentGrid())) {
      Report("请选择新增参照科目！", host::kCommandError);
      return false;
    }
    OpenEditor(true, pnNewNext);
    return true;
  });
}

bool Kjkm::FileEdit() {
  return Trapped("FileEdit->", host::kCommandError, [this] {
    (void)Running();
    if (!HasDataRows(CurrentGrid())) return false;
    if (!RowSelected(CurrentGrid())) {
      Report("请选择欲修改的科目！", host::kCommandError);
      return false;
    }
    OpenEditor(false, false);
    return true;
  });
}

namespace {

/// The account above a new one, which is the current one or the one above that. A page of one
/// category may lack it: then another one stands above in the outline.
std::optional<editing::FmBkmAdd::NamedAccount> AboveNew(const FlexGrid& grid, int row, bool below) {
  const int above = below ? row : grid.ParentRow(row);
  if (above < grid.FixedRows()) {
    if (grid.RowOutlineLevel(row) > 0) return std::nullopt;
    return editing::FmBkmAdd::NamedAccount{};
  }
  const std::string_view code = grid.TextMatrix(above, kCode);
  if (!grid.TextMatrix(row, kCode).starts_with(code)) return std::nullopt;
  return editing::FmBkmAdd::NamedAccount{std::string(code),
                                         std::string(grid.TextMatrix(above, kName))};
}

}  // namespace

void Kjkm::OpenEditor(bool pbNew, bool pnNewNext) {
  // The session itself is let go before the dialog opens: what is saved after a `Clear` is no
  // longer this view's concern.
  const auto system = Running()->pcSystem;
  const auto dialog = Running()->mFrmBmAdd;
  const FlexGrid& grid = CurrentGrid();
  const int row = grid.Row();
  if (!RowSelected(grid)) {  // an empty grid: the page's category, and no reference account
    const auto first = static_cast<std::size_t>(current_tab_ == 0 ? 0 : current_tab_ - 1);
    dialog->py_SubProgram(system, std::string(host::kCategories[first]), pbNew, pnNewNext, "", 0);
    return;
  }
  const auto text = [&](int col) { return std::string(grid.TextMatrix(row, col)); };
  if (const auto above = AboveNew(grid, row, pbNew && pnNewNext)) dialog->SetAbove(*above);
  dialog->py_SubProgram(system, text(kCategory), pbNew, pnNewNext, text(kCode),
                        pbNew ? 0 : host::LeadingLong(grid.TextMatrix(row, kId)));
}

bool Kjkm::FileDelete() {
  return Trapped("FileDelete->", host::kCommandError, [this] {
    const auto session = Running();
    FlexGrid& grid = CurrentGrid();
    if (!RowSelected(grid)) return false;
    const std::string code(grid.TextMatrix(grid.Row(), kCode));
    const std::string name(grid.TextMatrix(grid.Row(), kName));
    if (code.empty()) return false;  // an empty prefix would match the whole chart

    const auto system = session->pcSystem;
    const std::string parent =
        host::Required(session->code_rule, "CodeRule")->ParentCode(code, session->rule);
    const bool parent_becomes_leaf = !parent.empty() && CountBelow(*system, parent) <= 1;
    if (const char* refusal = UsageRefusal(*system, code)) {
      (void)user_.Ask(refusal, host::kPromptTitle, UserPort::Icon::kWarning,
                      UserPort::Buttons::kOk);
      return false;
    }
    if (!ConfirmDelete(code, name)) return false;
    if (session_ != session) return false;  // the host has let go of the view meanwhile

    DeleteAccounts(*system, code, parent_becomes_leaf ? parent : std::string());
    if (session_ == session) RemoveDeleted(grid, code);
    return true;
  });
}

bool Kjkm::ConfirmDelete(const std::string& code, const std::string& name) {
  const int row = RowOf(CurrentGrid(), code);
  const bool has_children =
      row >= CurrentGrid().FixedRows() && CurrentGrid().FirstChildRow(row) >= 0;
  const std::string question = has_children ? "是否删除当前及其下级科目：" : "是否删除当前科目：";
  return user_.Ask(question + code + " " + name, host::kPromptTitle, UserPort::Icon::kInformation,
                   UserPort::Buttons::kYesNoDefaultNo) == UserPort::Answer::kYes;
}

int Kjkm::RowOf(const FlexGrid& grid, const std::string& code) {
  // Not the current one: the host may have refreshed the view since the command began.
  return grid.FindRow(code, grid.FixedRows(), kCode);
}

void Kjkm::DeleteAccounts(host::SystemObject& system, const std::string& code,
                          const std::string& new_leaf) {
  ThrowIfFailed(host::ExecuteSql(system, "delete from gl_code where ccode like '" + code + "%'"));
  if (new_leaf.empty()) return;
  ThrowIfFailed(
      host::ExecuteSql(system, "update gl_code set bend=1 where ccode='" + new_leaf + "'"));
  ThrowIfFailed(editing::UpdateLedgerCode(system, code, new_leaf));
}

void Kjkm::RemoveDeleted(FlexGrid& grid, const std::string& code) {
  const int row = RowOf(grid, code);
  if (row >= grid.FixedRows()) {
    if (grid.FirstChildRow(row) >= 0) {
      grid.RemoveNode(row);
    } else {
      grid.RemoveItem(row);
    }
  }
  (void)grid.SetFocus();
}

}  // namespace tavrix::maintenance
