#include "book/session/deletion_check.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace desk::book {

namespace {

// The statements of the account list, as it sends them on every engine.
constexpr std::string_view kList =
    "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code";
constexpr std::string_view kCount = "select count(i_id) from gl_accvouch where ccode like '";
constexpr std::string_view kDelete = "delete from gl_code where ccode like '";
constexpr std::string_view kEnd = "%'";

/// The code between `start` and the end of `sql`; empty when it is another statement.
std::string CodeIn(std::string_view sql, std::string_view start) {
  if (!sql.starts_with(start) || !sql.ends_with(kEnd)) return {};
  sql.remove_prefix(start.size());
  sql.remove_suffix(std::min(kEnd.size(), sql.size()));
  const bool plain = sql.find_first_of("'%_*\\") == std::string_view::npos;
  return plain ? std::string(sql) : std::string();
}

struct Found {
  std::int64_t id = 0;
  std::string code;
};

std::vector<Found> AccountsFrom(Connection& connection, const std::string& code) {
  // Up to the last character that there is, with which no code goes on.
  const host::Value bounds[] = {code, code + "\xF4\x8F\xBF\xBF"};
  const auto rows =
      connection.Query("select i_id,ccode from gl_code where ccode>=? and ccode<? order by ccode",
                       Origin::kDesk, bounds);
  std::vector<Found> found;
  while (rows->Next()) {
    found.push_back({IntegerAt(*rows, 0), rows->Get(1).ToText()});
  }
  return found;
}

/// Later accounts have greater identifiers.
std::int64_t Newest(Connection& connection) {
  const auto rows = connection.Query("select max(i_id) from gl_code", Origin::kDesk);
  return rows->Next() ? IntegerAt(*rows, 0) : 0;
}

}  // namespace

bool DeletionCheck::WasListed(std::int64_t id) const {
  return own_.contains(id) ||
         std::ranges::all_of(newest_, [id](const auto& list) { return id <= list.second; });
}

void DeletionCheck::Note(Connection& connection, const std::string& sql) {
  if (sql.starts_with(kList)) newest_[sql] = Newest(connection);
  const std::string code = CodeIn(sql, kCount);
  if (code.empty()) return;
  Identifiers& seen = seen_[code];
  seen.clear();
  for (const Found& account : AccountsFrom(connection, code)) {
    if (WasListed(account.id)) seen.push_back(account.id);
  }
  std::ranges::sort(seen);
}

bool DeletionCheck::IsNoted(const std::string& sql) const {
  return seen_.contains(CodeIn(sql, kDelete));
}

void DeletionCheck::Check(Connection& connection, const std::string& sql) {
  const std::string code = CodeIn(sql, kDelete);
  const Identifiers seen = std::exchange(seen_[code], {});
  seen_.erase(code);
  for (const Found& account : AccountsFrom(connection, code)) {
    if (std::ranges::binary_search(seen, account.id)) continue;
    throw DatabaseError(ErrorKind::kRefused,
                        "其他用户刚增加了科目 " + account.code + "，没有删除，请刷新后再试");
  }
}

}  // namespace desk::book
