#include <array>
#include <optional>
#include <string>

#include "host/account.h"
#include "host/calls.h"
#include "host/grid_update.h"
#include "host/text.h"
#include "picker/columns.h"
#include "picker/parameters.h"
#include "picker/sel_kjkm_impl.h"
#include "picker/tree_keys.h"

// Adding and changing accounts from within the picker.
namespace tavrix::picker {

namespace {

/// The columns of the list, by the names of their fields; nothing when the view does not take the
/// account.
std::optional<std::array<std::string, kColumns>> ReadSaved(host::Recordset& account) {
  static constexpr std::array<const char*, kColumns> kFields = {
      "i_id", "ccode", "ccode_name", "chelp", "bpr", "cclass", "bclose", "bend"};
  if (account.EndOfFile()) return {};
  std::array<std::string, kColumns> texts;
  for (std::size_t col = 0; col < kColumns; ++col)
    texts[col] = host::ReadField(account, kFields[col]).ToText();
  return texts;
}

}  // namespace

void selKjkm::OpenForm() {
  const auto session = Running();
  if (!session->mfrmKjkm) session->mfrmKjkm = CreateForm(session);
  const auto form = session->mfrmKjkm;
  const int row = Vs_.Row();
  if (row < Vs_.FixedRows() || Vs_.IsTotalRow(row)) {
    form->py_SubProgram(session->m_System, CategoryOfNewAccount(), true);
    return;
  }
  if (const int above = RowAbove(row); above >= 0) {
    form->SetAbove(
        {std::string(Vs_.TextMatrix(above, kCode)), std::string(Vs_.TextMatrix(above, kName))});
  }
  form->py_SubProgram(session->m_System, std::string(Vs_.TextMatrix(row, kCategory)), false, false,
                      std::string(Vs_.TextMatrix(row, kCode)),
                      host::LeadingLong(Vs_.TextMatrix(row, kId)));
}

/// The account that has the longest beginning of this one's code; -1 when the list has none.
int selKjkm::RowAbove(int row) const {
  std::string code(Vs_.TextMatrix(row, kCode));
  while (code.size() > 1) {
    code.pop_back();
    const int above = Vs_.FindRow(code, Vs_.FixedRows(), kCode);
    if (above >= Vs_.FixedRows()) return above;
  }
  return -1;
}

std::shared_ptr<editing::FmBkmAdd> selKjkm::CreateForm(const std::shared_ptr<Session>& session) {
  auto form = std::make_shared<editing::FmBkmAdd>(user_);
  // The open form may outlast the session, and with it the picker itself.
  const std::weak_ptr<Session> held = session;
  form->EvHasLoad.Add([this, held](bool pNew, std::int32_t plID) {
    if (Runs(held)) mfrmKjkm_EvHasLoad(pNew, plID);
  });
  form->ErrMessage.Add([this, held](const std::string& psMsg, std::int32_t, const std::string&) {
    if (Runs(held)) mfrmKjkm_ErrMessage(psMsg);
  });
  return form;
}

std::string selKjkm::CategoryOfNewAccount() const {
  const viewkit::TreeNode* node = TV_.SelectedItem();
  if (node != nullptr && tree_key::IsCategory(*node)) return node->Tag();
  const auto category = Parameter(parameter::kCategory);
  return category ? category->ToText() : std::string(host::kCategories[0]);
}

void selKjkm::mfrmKjkm_EvHasLoad(bool pNew, std::int32_t plID) noexcept {
  Trapped([&] {
    if (plID <= 0) return;
    const auto session = Running();
    const std::string id = std::to_string(plID);
    // The parameters are not applied here, deliberately unlike the list: what the user has just
    // written is shown.
    const std::string where = " WHERE i_id=" + id + ViewFilter();
    const bool jet = host::DialectOf(*session->m_System) == host::Dialect::kJet;
    const std::string select =
        jet ? "SELECT i_id,ccode,ccode_name,chelp,iif(bproperty=1,'借','贷') as "
              "bpr,cclass,bclose,bend"
            : "SELECT i_id,ccode,ccode_name,chelp,(case when (bproperty=1) then '借' else '贷'end) "
              "as bpr,cclass,bclose,bend";
    const auto texts = host::ReadRows(
        *session->m_System, select + " FROM gl_code " + where + " order by ccode", ReadSaved);
    if (texts && session == session_) WriteRow(*texts, pNew, id);
  });
}

void selKjkm::WriteRow(const std::array<std::string, kColumns>& texts, bool is_new,
                       const std::string& id) {
  const host::GridUpdate update(Vs_);
  const bool totals = HasTotals();
  const int row = is_new ? Vs_.AddItem() : RowOfEdited(id);
  if (row < Vs_.FixedRows()) return;
  for (int col = 0; col < kColumns; ++col) {
    Vs_.SetTextMatrix(row, col, texts[static_cast<std::size_t>(col)]);
  }
  if (is_new) Vs_.SetRow(row);
  if (totals) SortInto();
  RestoreTotals();
  if (!is_new) return;
  Vs_.ShowRow(Vs_.Row());  // the layout may have sorted it in
  ShowSelectionCount();
}

/// Among rows of its group, where the next load would put it: at the end of the list it would be a
/// second group of the same name.
void selKjkm::SortInto() {
  Vs_.Subtotal(viewkit::SubtotalFunction::kClear);
  Vs_.SortRows(kCode, viewkit::SortOrder::kStringAscending, Vs_.FixedRows(), Vs_.Rows() - 1);
}

int selKjkm::RowOfEdited(const std::string& id) const {
  const int row = Vs_.Row();
  if (row >= Vs_.FixedRows() && !Vs_.IsTotalRow(row) && Vs_.TextMatrix(row, kId) == id) return row;
  // The host has refreshed the picker while the form was open.
  return Vs_.FindRow(id, Vs_.FixedRows(), kId);
}

void selKjkm::mfrmKjkm_ErrMessage(const std::string& psMsg) noexcept {
  Trapped([&] {
    using viewkit::UserPort;
    (void)user_.Ask(psMsg, host::kPromptTitle, UserPort::Icon::kInformation,
                    UserPort::Buttons::kOk);
  });
}

}  // namespace tavrix::picker
