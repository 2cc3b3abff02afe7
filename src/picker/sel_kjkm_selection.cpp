#include <string>

#include "host/account.h"
#include "host/calls.h"
#include "host/flags.h"
#include "host/text.h"
#include "picker/columns.h"
#include "picker/parameters.h"
#include "picker/sel_kjkm_impl.h"

// From the selected rows to the picked accounts.
namespace tavrix::picker {

namespace {

constexpr std::int32_t kNoAccount = -1;  // an id that finds nothing

}  // namespace

void selKjkm::FinishSelection() noexcept {
  const auto session = session_;
  if (!Trapped([this] { return CollectSelection(); })) return;
  DoSaveFormStatus();
  if (session != session_) return;  // the host has let go of the picker meanwhile
  Trapped([this] { DoSelect.Raise(); });
}

bool selKjkm::CollectSelection() {
  const auto session = Running();
  // Held here: a host that runs statements may let the user validate or pick meanwhile.
  const auto selected = m_Selected = std::make_shared<colKjkm>();
  if (Vs_.SelectionMode() == viewkit::SelectionMode::kListBox) {
    for (int n = 0; n < Vs_.SelectedRows(); ++n) {
      const int row = Vs_.SelectedRow(n);
      if (Vs_.IsTotalRow(row)) continue;  // no account, whatever its texts
      if (RefusesRow(row)) return false;
      AddAccount(*session, *selected, host::LeadingLong(Vs_.TextMatrix(row, kId)));
      if (session != session_) return false;
    }
  } else {
    const int row = Vs_.Row();
    const bool none = Vs_.Rows() <= Vs_.FixedRows() || row < 1 || Vs_.IsTotalRow(row);
    if (!none && RefusesRow(row)) return false;
    AddAccount(*session, *selected,
               none ? kNoAccount : host::LeadingLong(Vs_.TextMatrix(row, kId)));
  }
  // The last of several picks, and none that `Clear` has ended, has its say.
  if (selected != m_Selected) return false;
  const bool picked = selected->Count() > 0;
  m_Value = picked ? host::Value(std::int64_t{selected->At(0)->ID}) : host::Value("");
  m_Text = picked ? selected->At(0)->ccode : "";
  return true;
}

bool selKjkm::RefusesRow(int row) {
  if (!ParameterIsOne(parameter::kLeavesOnly) || host::IsSet(Vs_.TextMatrix(row, kLeaf)))
    return false;
  lblMessage_.SetCaption("不能返回非明细级科目！");
  return true;
}

void selKjkm::AddAccount(Session& session, colKjkm& selected, std::int32_t id) {
  // The number follows the sign without a blank.
  host::OpenRows account =
      host::QueryRows(*session.m_System, "SELECT * FROM gl_code WHERE i_id =" + std::to_string(id));
  AddResultRow(*account, selected);
  account.Close();
}

void selKjkm::AddResultRow(host::Recordset& account, colKjkm& selected) {
  if (account.EndOfFile()) return;
  const auto field = [&](const char* name) { return host::ReadField(account, name); };
  // All is read before the account joins the others: it is there whole, or not at all.
  clsKjkm read;
  read.ID = host::RequiredLong(field("i_id"), "i_id");
  read.ccode = field("ccode").ToText();
  read.ccode_name = field("ccode_name").ToText();
  read.chelp = field("chelp").ToText();
  read.cclass = field("cclass").ToText();
  read.bpr = host::IsOne(field("bproperty")) ? host::kDebit : host::kCredit;
  read.bclose = host::IsSet(field("bclose"));
  read.bend = host::IsSet(field("bend"));
  read.cbook_type = field("cbook_type").ToText();
  const auto item = selected.Add(std::to_string(read.ID), read.ID, read.ccode, read.ccode_name,
                                 read.chelp, read.cclass);
  item->bpr = read.bpr;
  item->bclose = read.bclose;
  item->bend = read.bend;
  item->cbook_type = read.cbook_type;
}

void selKjkm::Cancel() noexcept {
  Trapped([this] {
    m_Selected = std::make_shared<colKjkm>();
    DoCancel.Raise();
  });
}

void selKjkm::ShowSelectionCount() {
  const int accounts = AccountRows();
  int selected = Vs_.SelectedRows();
  const bool totals = accounts != Vs_.Rows() - Vs_.FixedRows();
  for (int row = Vs_.FixedRows(); totals && row < Vs_.Rows(); ++row) {
    selected -= Vs_.IsTotalRow(row) && Vs_.IsSelected(row) ? 1 : 0;
  }
  LblCount_.SetCaption("共:" + std::to_string(accounts) + "条，已选中" + std::to_string(selected) +
                       "条");
}

}  // namespace tavrix::picker
