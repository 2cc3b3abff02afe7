#include "book/sqlite/sqlite_error.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace desk::book {

namespace {

struct Meaning {
  ErrorKind kind = ErrorKind::kOther;
  std::string_view text;
};

constexpr std::string_view kHeldByOthers = "账簿正被其他用户使用，请稍后再试";
/// The one key between tables that a book has.
constexpr std::string_view kAccountsBelow = "科目还有下级，不能删除";

Meaning MeaningOfConstraint(int extended_code, std::string_view message) {
  // What the rules of the book refuse is a sentence for users already.
  if (extended_code == SQLITE_CONSTRAINT_TRIGGER) return {ErrorKind::kRefused, message};
  if (extended_code == SQLITE_CONSTRAINT_FOREIGNKEY) return {ErrorKind::kRefused, kAccountsBelow};
  const bool key = extended_code == SQLITE_CONSTRAINT_UNIQUE ||
                   extended_code == SQLITE_CONSTRAINT_PRIMARYKEY ||
                   extended_code == SQLITE_CONSTRAINT_ROWID;
  if (!key) return {ErrorKind::kOther, "数据不符合账簿的规定"};
  const bool code = message.find("gl_code.ccode") != std::string_view::npos;
  return {ErrorKind::kDuplicate, code ? "科目编码重复" : "数据重复"};
}

struct CodeMeaning {
  int code;  ///< SQLite's primary result code
  Meaning meaning;
};

constexpr CodeMeaning kMeanings[] = {
    {SQLITE_BUSY, {ErrorKind::kLocked, kHeldByOthers}},
    {SQLITE_LOCKED, {ErrorKind::kLocked, kHeldByOthers}},
    {SQLITE_READONLY, {ErrorKind::kReadOnly, "账簿是只读的，不能写入"}},
    {SQLITE_FULL, {ErrorKind::kFull, "磁盘已满，数据没有保存"}},
    {SQLITE_NOTADB, {ErrorKind::kDamaged, "这个文件不是账簿（不是数据库文件）"}},
    {SQLITE_CORRUPT, {ErrorKind::kDamaged, "账簿文件已损坏"}},
    {SQLITE_CANTOPEN, {ErrorKind::kOther, "无法打开账簿文件"}},
    {SQLITE_IOERR, {ErrorKind::kOther, "读写账簿文件时出错"}},
    {SQLITE_NOMEM, {ErrorKind::kOther, "内存不足"}},
    {SQLITE_INTERRUPT, {ErrorKind::kOther, "账簿没有在限定的时间内给出数据"}},
};

Meaning MeaningOf(int extended_code, std::string_view message) {
  const int code = extended_code & 0xFF;
  if (code == SQLITE_CONSTRAINT) return MeaningOfConstraint(extended_code, message);
  const auto* const known = std::ranges::find(kMeanings, code, &CodeMeaning::code);
  if (known != std::end(kMeanings)) return known->meaning;
  if (message.starts_with("no such table")) return {ErrorKind::kOther, "账簿中没有这个表"};
  if (message.starts_with("no such column")) return {ErrorKind::kOther, "账簿中没有这个列"};
  if (message.ends_with("syntax error")) return {ErrorKind::kOther, "语句有语法错误"};
  return {};
}

}  // namespace

DatabaseError SqliteError(int extended_code, const std::string& message) {
  const Meaning meaning = MeaningOf(extended_code, message);
  if (meaning.text.empty()) return {meaning.kind, message};
  if (meaning.kind == ErrorKind::kRefused) return {meaning.kind, std::string(meaning.text)};
  return {meaning.kind, std::string(meaning.text) + "：" + message};
}

DatabaseError SqliteError(sqlite3* database) {
  return SqliteError(sqlite3_extended_errcode(database), sqlite3_errmsg(database));
}

}  // namespace desk::book
