// Statements that the guard lets through reach nothing but the tables of the schema: what it says
// is compared with what SQLite and, where there is one, a PostgreSQL server know of them.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "book/sql/sql_guard.h"
#include "host/non_copyable.h"
#include "input.h"
#include "server_witness.h"
#include "spoiled.h"
#include "sql_statements.h"
#include "sqlite_witness.h"
#include "too_far.h"

namespace tavrix::fuzz {
namespace {

bool Accepts(const std::string& sql) {
  try {
    (void)desk::book::CheckCallerStatement(sql);
    return true;
  } catch (const desk::book::DatabaseError&) {
    return false;
  }
}

std::string Joined(const Tokens& tokens, Input& input) {
  std::string sql;
  for (const std::string& token : tokens) {
    sql += token;
    if (input.Number(15) != 1) sql += ' ';
  }
  return sql;
}

/// How often each verdict was given, printed at the end: a fuzzer whose statements are all refused
/// would find nothing.
struct Counts : private host::NonCopyable {
  long made = 0;
  long accepted = 0;
  long taken = 0;
  long served = 0;
  ~Counts() {
    std::fprintf(stderr, "%ld statements, %ld accepted, %ld good for SQLite, %ld for the server\n",
                 made, accepted, taken, served);
  }
};

void Judge(const std::string& sql) {
  static Counts counts;
  static SqliteWitness sqlite;
  ++counts.made;
  if (!Accepts(sql)) return;
  ++counts.accepted;
  try {
    if (sqlite.Look(sql)) ++counts.taken;
    ServerWitness* server = ServerWitness::OfEnvironment();
    if (server != nullptr && server->Look(sql)) ++counts.served;
  } catch (const TooFar& error) {
    std::fprintf(stderr, "too far: %s\n%s\n", error.what(), sql.c_str());
    std::abort();
  }
}

void Run(const std::uint8_t* data, std::size_t size) {
  // What spoils a statement comes first: making it may use all that there is.
  const std::size_t head = std::min<std::size_t>(size, 16);
  Input how(data, head);
  Input rest(data + head, size - head);
  if (how.Number(7) == 7) return Judge(std::string(how.Rest()) + std::string(rest.Rest()));
  const bool spoiled = how.Number(3) > 0;
  Tokens tokens = StatementMaker(rest).Make();
  if (spoiled) {
    Spoiler(tokens, how).Run();
    return Judge(Joined(tokens, how));
  }
  std::string sql;
  for (const std::string& token : tokens) sql += token + ' ';
  if (!Accepts(sql)) {
    std::fprintf(stderr, "refused: %s\n", sql.c_str());
    std::abort();
  }
  Judge(sql);
}

}  // namespace
}  // namespace tavrix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavrix::fuzz::Run(data, size);
  return 0;
}
