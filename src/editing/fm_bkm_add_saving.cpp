#include <string>
#include <utility>

#include "editing/fm_bkm_add.h"
#include "editing/fm_bkm_add_impl.h"
#include "editing/ledger_code.h"
#include "host/calls.h"
#include "host/flag_scope.h"
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
  return Trapped("FileSave->", host::kCommandError, [this] {
    const auto session = Current();
    if (session->saving) return false;  // a click while the host runs a statement of this save
    const host::FlagScope saving(session->saving);
    FindInserted(*session);
    if (!IsCanSave()) return false;
    const Busy busy(*this, "正在保存数据");
    const std::string code = CodeText();
    const bool written =
        session->record_id > 0 ? UpdateAccount(*session, code) : InsertAccount(*session, code);
    if (!written || !SendRest(*session, code)) return false;
    const bool is_new = session->unfinished->IsNew();
    session->unfinished.reset();
    EvHasLoad.Raise(is_new, session->record_id);
    return true;
  });
}

bool FmBkmAdd::InsertAccount(Session& session, const std::string& code) {
  const auto given = session.pcSystem->NewIdentifier("gl_code", "i_ID");
  if (!given.error.empty()) {
    Refuse(given.error);
    return false;
  }
  if (given.id <= 0) host::ThrowMissing("NewIdentifier");
  const std::string statement = InsertStatement(session, given.id);
  session.attempted_id = given.id;
  session.changed = session.unwritten = false;  // edits from here on are not in the statement
  if (!Send(session, statement)) return false;
  Inserted(session, std::exchange(session.attempted_id, 0), code);
  return true;
}

// A failure tells less than it seems to: a connection may break when the statement stands already.
void FmBkmAdd::FindInserted(Session& session) {
  if (session.attempted_id == 0) return;
  const auto stored = ReadStored(session, session.attempted_id);
  const std::int32_t id = std::exchange(session.attempted_id, 0);
  session.changed = session.changed || !stored;
  if (!stored) return;
  Inserted(session, id, stored->code);
}

void FmBkmAdd::Inserted(Session& session, std::int32_t id, const std::string& code) {
  session.record_id = id;
  session.unfinished.emplace(true);
  Written(session, code, code);
}

bool FmBkmAdd::UpdateAccount(Session& session, const std::string& code) {
  const EditCheck check = IsCanEdit(code, session.record_id);
  if (!check.allowed) {
    session.changed = false;  // counts as no change, so that closing does not ask
    return false;
  }
  const std::string& stored = *check.stored_code;
  const auto attempted = std::exchange(session.attempted_from, std::nullopt);
  const bool stands = attempted && *attempted != stored;
  if (stands) Written(session, *attempted, stored);
  if (attempted && !stands) session.unwritten = true;
  if (session.unfinished && !session.unwritten && stored == code) return true;
  const std::string statement = UpdateStatement(session);
  session.attempted_from = stored;
  session.changed = session.unwritten = false;
  if (!Send(session, statement)) return false;
  session.attempted_from.reset();
  Written(session, stored, code);
  return true;
}

void FmBkmAdd::Written(Session& session, const std::string& from, const std::string& to) {
  if (!session.unfinished) session.unfinished.emplace(false);
  session.unfinished->Written(from, to);
  session.initial_code = to;
}

bool FmBkmAdd::SendRest(Session& session, const std::string& code) {
  for (UnfinishedSave& rest = *session.unfinished; !rest.Done(); rest.Finish()) {
    const SaveStep::Kind kind = rest.Next().kind;
    const bool stands = kind == SaveStep::Kind::kMovePostings  ? MoveLedger(session, code)
                        : kind == SaveStep::Kind::kLeaveParent ? LeaveOldParent(session)
                                                               : JoinNewParent(session, code);
    if (!stands) return false;
  }
  return true;
}

bool FmBkmAdd::MoveLedger(Session& session, const std::string& code) {
  const SaveStep& step = session.unfinished->Next();
  if (step.code == code) return true;  // the account has got its old code back
  const std::string error = MovePostings(*session.pcSystem, step.ledger, step.code, code);
  if (!error.empty()) Refuse(error);
  return error.empty();
}

// The parent of the old code may have lost its last account and is a leaf then.
bool FmBkmAdd::LeaveOldParent(Session& session) {
  const std::string parent =
      session.code_rule->ParentCode(session.unfinished->Next().code, session.rule);
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
  SaveStep& step = session.unfinished->Next();
  if (step.code != parent) {
    const host::Value leaf = host::QueryScalar(
        *session.pcSystem, "select bend from gl_code where ccode='" + parent + "'");
    if (leaf.ToNumber() != 1) return true;  // exactly 1; any other value leaves the parent alone
    step.code = parent;
  }
  if (!Send(session, "update gl_code set bend=0 where ccode='" + parent + "'")) return false;
  session.unfinished->HandDown(parent);
  return true;
}

bool FmBkmAdd::Send(Session& session, const std::string& sql) {
  const std::string error = host::ExecuteSql(*session.pcSystem, sql);
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
