#include "book/session/change_watch.h"

#include <cstdint>
#include <string_view>

namespace desk::book {

namespace {

/// Sums up all cells of a result, each with its kind.
class Digest final : public CellSink {
 public:
  void OnNull() override { Add("\x01"); }
  void OnInteger(std::int64_t number) override { Add(std::to_string(number)); }
  void OnNumber(double number) override { Add(std::to_string(number)); }
  void OnText(std::string_view text) override { Add(text); }
  [[nodiscard]] std::string Text() const { return std::to_string(sum_); }

 private:
  void Add(std::string_view text) {
    constexpr std::uint64_t kPrime = 0x100000001B3;
    for (const char unit : text) sum_ = (sum_ ^ static_cast<unsigned char>(unit)) * kPrime;
    sum_ = (sum_ ^ 0xFF) * kPrime;  // the end of a cell
  }
  std::uint64_t sum_ = 0xCBF29CE484222325;
};

// Postings are added; what moves them from account to account changes accounts. Opening balances
// that are written anew without a new row are not noticed.
constexpr const char* kServerPostings =
    "select (select max(i_id)from gl_accvouch),(select max(i_id)from gl_accass),(select max(i_id)"
    "from gl_accsum)";
// Where there is no history. The server adds to it when a connection rests, after ten seconds at
// the latest.
constexpr const char* kServerAccountsCount =
    "select sum(n_tup_ins+n_tup_upd+n_tup_del)from pg_stat_user_tables where relname='gl_code'";

}  // namespace

void CheckReadable(Session& session) {
  const auto rows = session.Own().Query(
      "select count(*) from gl_code,gl_accvouch,gl_accass,gl_accsum where 1=0", Origin::kDesk);
  static_cast<void>(rows->Next());
}

ChangeWatch::ChangeWatch(Session& session) : session_(session) {
  Note();
}

std::string ChangeWatch::DigestOf(const char* sql) {
  Digest digest;
  session_.Own().Query(sql, Origin::kDesk)->ReadAll(digest);
  return digest.Text();
}

std::string ChangeWatch::DigestOf(const char* on_sqlite, const char* on_postgres) {
  switch (session_.Own().Dialect()) {
    case SqlDialect::kSqlite:
      return DigestOf(on_sqlite);
    case SqlDialect::kPostgres:
      return DigestOf(on_postgres);
    default:
      return {};
  }
}

std::string ChangeWatch::AnyMark() {
  return DigestOf("pragma data_version", kServerPostings);
}

std::string ChangeWatch::AccountsMark() {
  if (session_.KeepsHistory()) return DigestOf("select max(id) from desk_change");
  return DigestOf("select * from gl_code order by i_id", kServerAccountsCount);
}

void ChangeWatch::Note() {
  // A result half read would go on showing the state in which it began.
  session_.KeepResults();
  marks_.any = AnyMark();
  marks_.accounts = AccountsMark();
}

ChangeWatch::Seen ChangeWatch::Look() {
  session_.KeepResults();
  std::string any = AnyMark();
  // Only a file's mark tells of accounts too.
  const bool file = session_.Own().Dialect() == SqlDialect::kSqlite;
  if (file && any == marks_.any) return {};
  std::string accounts = AccountsMark();
  const Seen seen{.accounts = accounts != marks_.accounts, .postings = any != marks_.any};
  marks_ = {.any = std::move(any), .accounts = std::move(accounts)};
  return seen;
}

}  // namespace desk::book
