#include <string>

#include "editing/fm_bkm_add.h"
#include "editing/fm_bkm_add_impl.h"
#include "host/calls.h"
#include "host/flags.h"
#include "host/text.h"
#include "host/utf.h"

namespace tavrix::editing {

namespace {

enum class Fit { kLevel, kWrongLength, kTooLong };

/// Walks the rule to the level whose codes have `length` characters.
Fit FindLevel(const std::string& rule, std::size_t length, std::int32_t& level) {
  std::size_t total = 0;
  level = 0;
  for (const char16_t c : host::ToUtf16(rule)) {
    ++level;
    if (c >= u'0' && c <= u'9') total += static_cast<std::size_t>(c - u'0');
    if (total == length) return Fit::kLevel;
    if (total > length) return Fit::kWrongLength;
  }
  return Fit::kTooLong;
}

/// Moves `rows` to the row with this code; false when there is none.
bool FindCode(host::Recordset& rows, const std::string& code) {
  rows.MoveFirst();
  rows.Find(" ccode='" + code + "'");
  return !rows.EndOfFile();
}

bool BelongsToOther(host::Recordset& row, std::int32_t record_id) {
  return record_id != FmBkmAdd::kNoRecord &&
         host::RequiredLong(row.Field("i_ID"), "i_ID") != record_id;
}

/// Why `code` may not stand below `parent`, from which downwards `family` has the accounts; null
/// when it may.
const char* ParentRefusal(host::Recordset& family, const std::string& parent,
                          const std::string& code, std::int32_t record_id) {
  if (family.EndOfFile() || !FindCode(family, parent)) return "找不到它的上级编码";
  const bool own_parent = record_id != FmBkmAdd::kNoRecord &&
                          host::RequiredLong(family.Field("i_ID"), "i_ID") == record_id;
  if (own_parent) return "不能将上级编码修改为下级";
  // Without the mark that the first level's refusal has.
  if (FindCode(family, code) && BelongsToOther(family, record_id)) return "编码重复";
  return nullptr;
}

}  // namespace

bool FmBkmAdd::IsCanSave() noexcept {
  return Trapped("IsCanSave->", host::kCommandError, [this] {
    const auto session = Current();
    if (!session->Unsaved()) return false;
    const std::string code = CodeText();
    session->level = session->code_rule->LevelOf(code, session->rule);
    if (code.empty()) {
      Refuse("科目编码为空！");
      Txt(kCodeBox).SetFocus();
      return false;
    }
    if (code != session->initial_code && session->code_changed) {
      if (!IsCanCodeRule()) {
        Txt(kCodeBox).SetFocus();
        return false;
      }
      session->code_changed = false;
    }
    if (host::Trimmed(Txt(kNameBox).Text()).empty()) {
      Refuse("科目名称为空！");
      return false;
    }
    return true;
  });
}

bool FmBkmAdd::IsCanCodeRule() noexcept {
  return Trapped("IsCanCodeRule->", host::kCommandError, [this] {
    const auto session = Current();
    const Busy busy(*this, "正在验证编码规则");
    const std::string code = CodeText();
    if (code.empty() || BmIsTrue(code, session->record_id)) return true;
    Txt(kCodeBox).SetFocus();
    return false;
  });
}

std::optional<std::int32_t> FmBkmAdd::BmIsTrue(const std::string& code,
                                               std::int32_t record_id) noexcept {
  using Level = std::optional<std::int32_t>;
  return Trapped("BmIsTrue::", host::kCommandError, [&]() -> Level {
    const auto session = Current();
    std::int32_t level = 0;
    switch (FindLevel(session->rule, host::TextLength(code), level)) {
      case Fit::kWrongLength:
        Refuse("编码长度不对");
        return {};
      case Fit::kTooLong:
        Refuse("本软件仅支持 " + std::to_string(level) + " 级编码");
        return {};
      case Fit::kLevel:
        break;
    }
    const bool accepted = level > 1 ? ParentAllows(*session, code, record_id)
                                    : FirstLevelIsFree(*session, code, record_id);
    return accepted ? Level(level) : Level();
  });
}

bool FmBkmAdd::ParentAllows(Session& session, const std::string& code, std::int32_t record_id) {
  const std::string parent = session.code_rule->ParentCode(code, session.rule);
  const char* refusal = host::ReadRows(
      *session.pcSystem,
      "Select i_ID,ccode from gl_code where left(ccode," +
          std::to_string(host::TextLength(parent)) + ")='" + parent + "'",
      [&](host::Recordset& family) { return ParentRefusal(family, parent, code, record_id); });
  if (refusal != nullptr) Refuse(refusal);
  return refusal == nullptr;
}

bool FmBkmAdd::FirstLevelIsFree(Session& session, const std::string& code, std::int32_t record_id) {
  const bool free =
      host::ReadRows(*session.pcSystem, "Select ccode,i_ID from gl_code where ccode='" + code + "'",
                     [&](host::Recordset& taken) {
                       return taken.EndOfFile() || !BelongsToOther(taken, record_id);
                     });
  if (!free) Refuse("编码重复!");
  return free;
}

std::optional<FmBkmAdd::StoredAccount> FmBkmAdd::ReadStored(Session& session,
                                                            std::int32_t record_id) {
  return host::ReadRows(*session.pcSystem,
                        "Select bend,ccode from gl_code Where i_ID=" + std::to_string(record_id),
                        [](host::Recordset& row) {
                          std::optional<StoredAccount> stored;
                          if (row.EndOfFile()) return stored;
                          // A flag that is missing is not that of a leaf.
                          stored = {host::RequiredField(row, "ccode").ToText(),
                                    host::IsSet(host::ReadField(row, "bend"))};
                          return stored;
                        });
}

FmBkmAdd::EditCheck FmBkmAdd::IsCanEdit(const std::string& code, std::int32_t record_id) noexcept {
  return Trapped("IsCanEdit::", host::kCommandError, [&] {
    const auto session = Current();
    const auto stored = ReadStored(*session, record_id);
    if (!stored) throw AccountMissing();
    EditCheck check{true, stored->code};
    if (stored->code == code || stored->is_leaf) return check;
    Refuse("不能修改非明细级编码!");
    check.allowed = false;
    return check;
  });
}

}  // namespace tavrix::editing
