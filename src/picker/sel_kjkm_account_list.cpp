#include <string>
#include <utility>

#include "host/account.h"
#include "host/calls.h"
#include "host/flags.h"
#include "host/grid_update.h"
#include "host/text.h"
#include "picker/columns.h"
#include "picker/parameters.h"
#include "picker/sel_kjkm_impl.h"
#include "picker/tree_keys.h"

// Which accounts the parameters allow, and the list that shows them.
namespace tavrix::picker {

namespace {

using viewkit::Alignment;

/// " or ccode like 'A%' or ccode like 'B%'" for "A,B"; an empty element matches every code.
std::string PrefixPatterns(const std::string& codes) {
  const std::string list = codes + ",";
  std::string patterns;
  for (std::size_t start = 0; start < list.size();) {
    const std::size_t comma = list.find(',', start);
    std::string prefix = list.substr(start, comma - start);
    std::erase(prefix, '\'');
    patterns.append(" or ccode like '").append(prefix).append("%'");
    start = comma + 1;
  }
  return patterns;
}

}  // namespace

void selKjkm::InitGrid() {
  Vs_.SetFixedRows(1);
  Vs_.SetRows(Vs_.FixedRows());
  Vs_.SetCols(kColumns);
  Vs_.SetFixedCols(0);
  Vs_.SetSelectionMode(viewkit::SelectionMode::kListBox);
  Vs_.SetAllowSelection(false);  // where one row is wanted
  Vs_.SetToolTipText("提示：双击或按回车键选择完毕！");
  // The blanks inside widen the columns.
  Vs_.SetFormatString(
      "科目ID|科目编码    |科目名称        |助忆词|余额方向|科目类别    |是否使用|是否明细");
  for (int col = 0; col < kColumns; ++col) {
    const bool centered = col == kDirection || col == kClosed || col == kLeaf;
    Vs_.SetColAlignment(col, centered ? Alignment::kCenterCenter : Alignment::kLeftCenter);
    Vs_.SetFixedAlignment(col, Alignment::kCenterCenter);
  }
  Vs_.SetOutlineCol(kCode);  // a plain list: what one types on it is a code
}

bool selKjkm::Refresh() {
  lblMessage_.SetCaption("");
  // A right that cannot be read is not granted, but is no reason to show no accounts.
  bool may_maintain = false;
  Trapped([&] { may_maintain = MayMaintain(*Running()); });
  Cmd_[3]->SetVisible(may_maintain);
  Trapped([this] {
    const auto session = Running();
    Vs_.SetSelectionMode(ParameterIsOne(parameter::kSingle) ? viewkit::SelectionMode::kByRow
                                                            : viewkit::SelectionMode::kListBox);
    if (std::string key = Fingerprint(); key != session->m_ParamKey) {
      session->m_ParamKey = std::move(key);
      session->m_Loaded = false;
    }
    if (session->m_Loaded) return;
    session->tree_stands = LoadCategoryTree();
    if (session != session_) return;  // the host has let go of the picker meanwhile
    ReloadAccountList();
  });
  return true;
}

bool selKjkm::MayMaintain(Session& session) {
  const auto rights = host::Required(session.m_System->Rights(session.m_MaintainProgID), "Rights");
  return rights->CanAdd() || rights->CanEdit();
}

std::string selKjkm::Fingerprint() const {
  std::string key;
  const auto add = [&](const char* mark, const char* name) {
    if (const auto value = Parameter(name)) key.append(mark).append(value->ToText()).append(" ");
  };
  add("1.", parameter::kCategory);
  add("2.", parameter::kCodes);
  add("3.", parameter::kCustomers);
  add("4.", parameter::kSuppliers);
  return key;
}

std::string selKjkm::ParameterFilter() const {
  std::string filter;
  if (const auto codes = Parameter(parameter::kCodes)) {
    // Present but empty is no filter, and hides the category all the same.
    const std::string list = codes->ToText();
    if (!list.empty()) {
      constexpr std::size_t kLeadingOr = 4;
      filter.append(" and (").append(PrefixPatterns(list).substr(kLeadingOr)).append(")");
    }
  } else if (const auto category = Parameter(parameter::kCategory)) {
    filter.append(" and cclass='").append(category->ToText()).append("'");
  }
  if (const auto customers = Parameter(parameter::kCustomers)) {
    filter.append(" and bcus=").append(customers->ToText());
  }
  if (const auto suppliers = Parameter(parameter::kSuppliers)) {
    filter.append(" and bsup=").append(suppliers->ToText());
  }
  return filter;
}

std::string selKjkm::ViewFilter() const {
  std::string filter;
  if (const viewkit::TreeNode* node = TV_.SelectedItem(); node != nullptr) {
    const std::string& key = node->Key();
    if (tree_key::IsCategory(*node)) {
      filter.append(" AND cclass='").append(node->Tag()).append("'");
    } else if (key.starts_with(tree_key::kAccount)) {
      const std::string code = key.substr(1);
      filter.append(" AND ccode like '").append(code).append("%' and ccode<>'");
      filter.append(code).append("'");
    }
  }
  if (Chk_.Value() != viewkit::CheckBox::kChecked) filter += " AND bclose=0";
  return filter;
}

void selKjkm::ReloadAccountList() noexcept {
  const auto session = session_;
  if (session) session->m_Loaded = false;
  const bool loaded = LoadAccountList();
  if (session) session->m_Loaded = loaded && session->tree_stands;
}

bool selKjkm::LoadAccountList() noexcept {
  const auto session = session_;
  const bool loaded = Trapped([this] {
    const auto running = Running();
    const viewkit::WaitCursor wait(user_);
    const std::string where = " WHERE ccode<>''" + ParameterFilter() + ViewFilter();
    const bool jet = host::DialectOf(*running->m_System) == host::Dialect::kJet;
    const std::string select =
        jet ? "SELECT i_id,ccode,ccode_name,chelp,iif(bproperty=1,'借','贷'),cclass,bclose,bend"
            : "SELECT i_id,ccode,ccode_name,chelp,case when bproperty=1 then '借' else '贷' end "
              ",cclass,bclose,bend";
    host::RowSet accounts = host::ReadRows(
        *running->m_System, select + " FROM gl_code " + where + " order by ccode",
        [](host::Recordset& rows) {
          return rows.EndOfFile() ? host::RowSet(kColumns) : host::GivenRows(rows, kColumns);
        });
    // Whenever the host was called it may have let go of the picker, and show another book in it.
    if (running != session_) return;
    ShowRows(std::move(accounts));
    if (running != session_) return;
    Trapped([&] { SetWheelRange(*running); });
    (void)Vs_.SetFocus();  // it may be hidden
    ShowRowCount();
  });
  if (!loaded) {
    if (session) session->m_Loaded = false;  // the next refresh tries again
    load_error_ = lblMessage_.Caption();
  } else if (!load_error_.empty() && std::exchange(load_error_, "") == lblMessage_.Caption()) {
    lblMessage_.SetCaption("");
  }
  return loaded;
}

void selKjkm::ShowRows(host::RowSet accounts) {
  const host::GridUpdate update(Vs_);
  Vs_.LoadRows(std::move(accounts));
  const bool with_sealed = Chk_.Value() == viewkit::CheckBox::kChecked;
  Vs_.SetColHidden(kClosed, !with_sealed);
  for (int row = Vs_.FixedRows(); with_sealed && row < Vs_.Rows(); ++row) {
    if (host::IsSet(Vs_.TextMatrix(row, kClosed))) ShowSealed(row);
  }
  RestoreTotals();
}

/// A sealed account stands back.
void selKjkm::ShowSealed(int row) {
  for (const int col : {kCode, kName}) Vs_.SetCellForeColor(row, col, viewkit::color::kGrayText);
}

void selKjkm::ShowRowCount() {
  LblCount_.SetCaption("共:" + std::to_string(AccountRows()) + "条");
}

/// Where there are totals at all, the last row is one.
bool selKjkm::HasTotals() const {
  return Vs_.Rows() > Vs_.FixedRows() && Vs_.IsTotalRow(Vs_.Rows() - 1);
}

int selKjkm::AccountRows() const {
  const int rows = Vs_.Rows();
  int accounts = rows - Vs_.FixedRows();
  if (!HasTotals()) return accounts;
  for (int row = Vs_.FixedRows(); row < rows; ++row) accounts -= Vs_.IsTotalRow(row) ? 1 : 0;
  return accounts;
}

}  // namespace tavrix::picker
