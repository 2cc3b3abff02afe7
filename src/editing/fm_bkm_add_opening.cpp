#include <algorithm>
#include <utility>

#include "editing/fm_bkm_add.h"
#include "editing/fm_bkm_add_impl.h"
#include "host/account.h"
#include "host/calls.h"
#include "host/flag_scope.h"
#include "host/flags.h"
#include "host/text.h"

namespace tavrix::editing {

namespace {

using viewkit::CheckBox;

// The mode is read back from the caption.
constexpr const char* kEditCaption = "修改";
constexpr const char* kNewBelowCaption = "新增下级";
constexpr const char* kNewBesideCaption = "新增同级";

constexpr std::size_t kListColumns = 2;  // of each list's query: number, text

void FillFromQuery(host::SystemObject& system, viewkit::ComboBox& list, const std::string& sql) {
  const host::RowSet rows = host::ReadRows(system, sql, [](host::Recordset& entries) {
    return entries.EndOfFile() ? host::RowSet() : host::GivenRows(entries, kListColumns);
  });
  for (std::size_t row = 0; row < rows.Rows(); ++row) {
    list.AddItem(std::string(rows.Text(row, 1)), host::LeadingLong(rows.Text(row, 0)));
  }
}

template <class Words>
void FillWithWords(viewkit::ComboBox& list, const Words& words) {
  for (const std::string_view word : words) list.AddItem(std::string(word));
}

}  // namespace

void FmBkmAdd::py_SubProgram(std::shared_ptr<host::SystemObject> pcSystem,
                             const std::string& psKmLb, bool pbNew, bool pnNewNext,
                             const std::string& psBm, std::int32_t plID) noexcept {
  const auto self = weak_from_this().lock();  // the owner may let go while the dialog is shown
  const auto ours = std::make_shared<Session>();
  Trapped("py_SubProgram->", host::kLoadingError, [&] {
    if (session_) throw host::HostError("科目窗体已经打开");
    session_ = ours;
    StartSession(std::move(pcSystem), psKmLb, psBm);
    if (!Prepare(pbNew, pnNewNext, plID)) return;
    user_.ShowModal(*this);
  });
  if (session_ != ours) return;
  // Not closed: it never opened, or the program that showed it is ending.
  Trapped("py_SubProgram->", host::kLoadingError, [this] {
    Unload();
    session_.reset();
    above_.reset();
  });
}

void FmBkmAdd::StartSession(std::shared_ptr<host::SystemObject> pcSystem, const std::string& psKmLb,
                            const std::string& psBm) {
  const auto session = session_;
  session->pcSystem = host::Required(std::move(pcSystem), "pcSystem");
  session->category = psKmLb;
  session->reference = psBm;
  host::SystemObject& system = *session->pcSystem;
  session->data_helper = host::Required(system.CreateDataHelper(), "DataHelper");
  session->data_helper->SetDatabase(host::DatabaseOf(system));
  session->code_rule = host::Required(system.CreateCodeRule(), "CodeRule");
  session->log_helper = host::Required(system.CreateLogHelper(), "LogHelper");
}

// A record that cannot be read whole is not shown: saving it would write the missing part as empty.
// Nor is anything shown without the code rule, by which the level is written.
bool FmBkmAdd::Prepare(bool pbNew, bool pnNewNext, std::int32_t plID) {
  const auto session = session_;
  const host::FlagScope filling(filling_);
  ResetControls();
  if (!InitBaseValue()) return false;
  if (pbNew && pnNewNext && !above_) above_ = {.code = session->reference, .name = {}};
  if (pbNew) {
    SetCaption(pnNewNext ? kNewBelowCaption : kNewBesideCaption);
    PrepareNew();
  } else {
    SetCaption(kEditCaption);
    session->record_id = plID;
    if (!LoadData(plID)) return false;
  }
  session->initial_code = Txt(kCodeBox).Text();
  TellAbove();
  return true;
}

bool FmBkmAdd::InitBaseValue() noexcept {
  static constexpr const char* kPrefix = "InitBaseValue->";
  // One that cannot be read stays empty.
  const auto fill = [this](int list, const char* sql) {
    Trapped(kPrefix, host::kLoadingError, [&] {
      const auto session = Current();
      FillFromQuery(*session->pcSystem, Combo(list), sql);
    });
  };
  fill(kCurrencyList, "select 币种ID,外币名称 from tvxbz order by 外币代号");
  fill(kUnitList, "select 单位ID,名称 from tvxjldw order by 代码");
  return Trapped(kPrefix, host::kLoadingError, [this] {
    const auto session = Current();
    FillWithWords(Combo(kCategoryList), host::kCategories);
    FillWithWords(Combo(kBookTypeList), host::kBookTypes);
    session->rule = host::SettingText(*session->pcSystem, host::kCodeRuleSetting);
    SetBookType();
  });
}

void FmBkmAdd::PrepareNew() {
  GetNewCode();
  Combo(kCategoryList).SetText(session_->category);
  session_->proposes_direction = true;
  ProposeDirection();
  Combo(kCurrencyList).SetEnabled(false);
  Combo(kUnitList).SetEnabled(false);
  Combo(kGatherList).SetEnabled(false);
}

// A proposal is no change of the user's.
void FmBkmAdd::ProposeDirection() {
  if (!session_ || !session_->proposes_direction) return;
  const std::string& category = Combo(kCategoryList).Text();
  const bool credit =
      std::ranges::find(host::kCreditCategories, category) != host::kCreditCategories.end();
  const host::FlagScope filling(filling_);
  opt(credit ? kCreditOption : kDebitOption).SetValue(true);
}

void FmBkmAdd::GetNewCode() noexcept {
  Trapped("GetNewCode->", host::kCommandError, [this] {
    const auto session = Current();
    const Busy busy(*this, "正在取新的编码");
    const auto code = NextBm(session->reference, session->category, Caption() == kNewBelowCaption);
    if (code) Txt(kCodeBox).SetText(*code);
  });
}

bool FmBkmAdd::LoadData(std::int32_t plID) noexcept {
  return Trapped("LoadData->", host::kLoadingError, [&] {
    const auto session = Current();
    if (plID <= 0) throw AccountMissing();  // no row's: it would be saved as a new account
    const std::string sql = "select * from gl_code where i_id=" + std::to_string(plID);
    return host::ReadRows(*session->pcSystem, sql, [this](host::Recordset& account) {
      if (account.EndOfFile()) throw AccountMissing();
      FillControls(account);
      ShowDependencies();
      return true;
    });
  });
}

void FmBkmAdd::FillControls(host::Recordset& account) {
  const auto field = [&](const char* column) { return host::ReadField(account, column); };
  const auto text = [&](const char* column) { return field(column).ToText(); };
  const auto check = [&](int box, const char* column) {
    const bool set = host::IsSet(field(column));
    Chk(box).SetValue(set ? CheckBox::kChecked : CheckBox::kUnchecked);
  };
  Txt(kCodeBox).SetText(host::RequiredField(account, "ccode").ToText());
  Txt(kEnglishNameBox).SetText(text("ccode_engl"));
  Txt(kNameBox).SetText(text("ccode_name"));
  Txt(kMnemonicBox).SetText(text("chelp"));
  session_->level = field("igrade").ToLong();
  check(kCurrencyCheck, "bexchange");
  ShowStored(kCurrencyList, text("cexch_name"));
  ShowStored(kUnitList, text("cmeasure"));
  ShowStored(kGatherList, text("cgather"));
  ShowStored(kCategoryList, text("cclass"));
  ShowStored(kBookTypeList, text("cbook_type"));
  Txt(kControlledByBox).SetText(text("cother"));
  check(kClosedCheck, "bclose");
  check(kDepartmentCheck, "bdept");
  check(kPersonCheck, "bperson");
  check(kSupplierCheck, "bsup");
  check(kCustomerCheck, "bcus");
  check(kProjectCheck, "bitem");
  check(kJournalCheck, "br");
  check(kBankBookCheck, "be");
  opt(host::IsSet(field("bproperty")) ? kDebitOption : kCreditOption).SetValue(true);
}

// A stored text that the list does not know joins it, so that saving keeps it.
void FmBkmAdd::ShowStored(int list, const std::string& text) {
  viewkit::ComboBox& box = Combo(list);
  if (!text.empty() && box.FindItem(text) < 0 && list != kGatherList) box.AddItem(text);
  box.SetText(text);
}

}  // namespace tavrix::editing
