#include <string>

#include "editing/fm_bkm_add.h"
#include "editing/ledger_code.h"
#include "editing/session.h"
#include "editing/trap.h"
#include "host/calls.h"
#include "host/text.h"

namespace tavrix::editing {

namespace {

using host::Dialect;

/// A text goes into a statement as it stands: an embedded quote is not doubled, on purpose.
std::string Quoted(const std::string& text) {
  return "'" + std::string(host::Trimmed(text)) + "'";
}

std::string Flag(Dialect dialect, bool set) {
  if (dialect == Dialect::kJet) return set ? "True" : "False";
  return set ? "1" : "0";
}

std::string Flag(Dialect dialect, const viewkit::CheckBox& box) {
  // The server gets the box's own value.
  return dialect == Dialect::kJet ? Flag(dialect, box.Value() == viewkit::CheckBox::kChecked)
                                  : std::to_string(box.Value());
}

}  // namespace

bool FmBkmAdd::FileSave() noexcept {
  return Trapped("FileSave->", host::kCommandError, false, [this] {
    const auto session = Current();
    if (!IsCanSave()) return false;
    const Busy busy(*this, "正在保存数据");
    const std::string code = CodeText();
    const bool is_new = session->record_id <= 0;
    std::int32_t id = session->record_id;
    const bool written = is_new ? InsertAccount(*session, id) : UpdateAccount(*session, code);
    if (!written || !JoinNewParent(*session, code)) return false;
    session->record_id = id;
    session->changed = false;
    EvHasLoad.Raise(is_new, id);
    return true;
  });
}

bool FmBkmAdd::InsertAccount(Session& session, std::int32_t& id) {
  const auto given = session.pcSystem->NewIdentifier("gl_code", "i_ID");
  if (!given.error.empty()) {
    Refuse(given.error);
    return false;
  }
  if (given.id == 0) host::ThrowMissing("NewIdentifier");
  id = given.id;
  return Send(session, InsertStatement(session, id));
}

bool FmBkmAdd::UpdateAccount(Session& session, const std::string& code) {
  const EditCheck check = IsCanEdit(code, session.record_id);
  if (!check.allowed) {
    // A refused change counts as no change, so that closing does not ask; a record that could not
    // be read is tried again.
    if (check.stored_code) session.changed = false;
    return false;
  }
  if (!Send(session, UpdateStatement(session))) return false;
  const std::string& old_code = *check.stored_code;
  if (old_code == code) return true;
  return MovePostings(session, old_code, code) && LeaveOldParent(session, old_code);
}

// The parent of the old code may have lost its last account and is a leaf then.
bool FmBkmAdd::LeaveOldParent(Session& session, const std::string& old_code) {
  const std::string parent = session.code_rule->ParentCode(old_code, session.rule);
  if (parent.empty()) return true;
  const double below = host::QueryCount(
      *session.pcSystem, "select count(i_ID) from gl_code where ccode like '" + parent +
                             "%' and len(ccode)>" + std::to_string(host::TextLength(parent)));
  return below > 0 || Send(session, "update gl_code set bend=1 where ccode='" + parent + "'");
}

// A parent that was a leaf hands its postings to its first sub-account.
bool FmBkmAdd::JoinNewParent(Session& session, const std::string& code) {
  const std::string parent = session.code_rule->ParentCode(code, session.rule);
  if (parent.empty()) return true;
  const host::Value leaf =
      host::QueryScalar(*session.pcSystem, "select bend from gl_code where ccode='" + parent + "'");
  if (leaf.ToNumber() != 1) return true;  // exactly 1; any other value leaves the parent alone
  return Send(session, "update gl_code set bend=0 where ccode='" + parent + "'") &&
         MovePostings(session, parent, code);
}

bool FmBkmAdd::Send(Session& session, const std::string& sql) {
  const std::string error = host::ExecuteSql(*session.pcSystem, sql);
  if (!error.empty()) Refuse(error);
  return error.empty();
}

bool FmBkmAdd::MovePostings(Session& session, const std::string& from, const std::string& to) {
  const std::string error = UpdateLedgerCode(*session.pcSystem, from, to);
  if (!error.empty()) Refuse(error);
  return error.empty();
}

std::string FmBkmAdd::UpdateStatement(Session& session) {
  const Dialect dialect = host::DialectOf(*session.pcSystem);
  const auto text = [this](int box) { return Quoted(Txt(box).Text()); };
  const auto list = [this](int box) { return Quoted(Combo(box).Text()); };
  const auto flag = [&](int box) { return Flag(dialect, Chk(box)); };
  return "update gl_code set cclass=" + list(kCategoryList) + ",ccode=" + text(kCodeBox) +
         ",ccode_name=" + text(kNameBox) + ",ccode_engl=" + text(kEnglishNameBox) +
         ",igrade=" + std::to_string(session.level) +
         ",bproperty=" + Flag(dialect, opt(kDebitOption).Value()) +
         ",cbook_type=" + list(kBookTypeList) + ",chelp=" + text(kMnemonicBox) +
         ",bexchange=" + flag(kCurrencyCheck) + ",cexch_name=" + list(kCurrencyList) +
         ",cmeasure=" + list(kUnitList) + ",bperson=" + flag(kPersonCheck) +
         ",bcus=" + flag(kCustomerCheck) + ",bsup=" + flag(kSupplierCheck) +
         ",bdept=" + flag(kDepartmentCheck) + ",bitem=" + flag(kProjectCheck) +
         ",br=" + flag(kJournalCheck) + ",be=" + flag(kBankBookCheck) +
         ",cgather=" + list(kGatherList) + ",bclose=" + flag(kClosedCheck) +
         ",cother=" + text(kControlledByBox) + " where i_id=" + std::to_string(session.record_id);
}

std::string FmBkmAdd::InsertStatement(Session& session, std::int32_t id) {
  const Dialect dialect = host::DialectOf(*session.pcSystem);
  const auto text = [this](int box) { return Quoted(Txt(box).Text()) + ","; };
  const auto list = [this](int box) { return Quoted(Combo(box).Text()) + ","; };
  const auto flag = [&](int box) { return Flag(dialect, Chk(box)) + ","; };
  return "insert into gl_code(I_id,cclass,Cclass_engl,cclassany,cclassany_engl,ccode,ccode_name,"
         "ccode_engl,igrade,bproperty,cbook_type,cbook_type_engl,chelp,cexch_name,cmeasure,bperson,"
         "bcus,bsup,bdept,bitem,cass_item,br,be,cgather,bend,bexchange,bcash,bbank,bused,bd_c,"
         "dbegin,dend,itrans,bclose,cother,iotherused,bcashitem)values(" +
         std::to_string(id) + "," + list(kCategoryList) + "'','',''," + text(kCodeBox) +
         text(kNameBox) + text(kEnglishNameBox) + std::to_string(session.level) + "," +
         Flag(dialect, opt(kDebitOption).Value()) + "," + list(kBookTypeList) + "''," +
         text(kMnemonicBox) + list(kCurrencyList) + list(kUnitList) + flag(kPersonCheck) +
         flag(kCustomerCheck) + flag(kSupplierCheck) + flag(kDepartmentCheck) +
         flag(kProjectCheck) + "''," + flag(kJournalCheck) + flag(kBankBookCheck) +
         list(kGatherList) + Flag(dialect, true) + "," + flag(kCurrencyCheck) + "0,0,0,0,0,0,0," +
         flag(kClosedCheck) + text(kControlledByBox) + "0,0)";
}

}  // namespace tavrix::editing
