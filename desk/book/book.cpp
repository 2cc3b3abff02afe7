#include "book/book.h"

#include <charconv>
#include <utility>

#include "book/database/connection_string.h"
#include "book/engines.h"
#include "book/session/identifiers.h"
#include "book/session/journal_command.h"
#include "book/session/schema.h"
#include "book/session/settings.h"
#include "host/account.h"

namespace desk::book {

namespace {

void InsertCurrencies(Connection& connection, const std::vector<Currency>& currencies) {
  int id = 0;
  for (const Currency& currency : currencies) {
    const host::Value values[] = {++id, currency.name, currency.code};
    connection.Execute("insert into tvxbz(币种ID,外币名称,外币代号)values(?,?,?)", Origin::kDesk,
                       values);
  }
}

void InsertUnits(Connection& connection, const std::vector<Unit>& units) {
  int id = 0;
  for (const Unit& unit : units) {
    const host::Value values[] = {++id, unit.name, unit.code};
    connection.Execute("insert into tvxjldw(单位ID,名称,代码)values(?,?,?)", Origin::kDesk, values);
  }
}

void InsertSetting(Connection& connection, std::string_view key, std::string_view value) {
  const host::Value values[] = {host::kSystemSection, key, value};
  connection.Execute("insert into xt_accinformation(system_code,item_code,item_value)values(?,?,?)",
                     Origin::kDesk, values);
}

/// The program that maintains the chart, as the picker asks for it.
void InsertPrograms(Connection& connection) {
  connection.Execute("insert into xt_objects(progid,billitem,title)values(201,2015,'会计科目')",
                     Origin::kDesk);
}

void Fill(Session& session, const Template& content) {
  Transaction transaction(session);
  Connection& connection = session.Own();
  CreateSchema(connection);
  InsertSetting(connection, host::kCodeRuleSetting, content.code_rule);
  InsertSetting(connection, host::kScrollRateSetting, "5");
  InsertCurrencies(connection, content.currencies);
  InsertUnits(connection, content.units);
  InsertPrograms(connection);
  InsertAccounts(connection, content.accounts, content.code_rule);
  ForgetHistory(session);
  transaction.Commit();
}

/// What the book says of how long a server may take for a statement: seconds, 0 for ever. Anything
/// else leaves the limit as it is.
void ApplyTimeLimit(Session& session) {
  if (session.Own().Encryption() == Wire::kNone) return;  // a file waits for nobody
  constexpr int kMax = 24 * 60 * 60;
  try {
    const std::string text = ReadSetting(session, "desk", "time_limit");
    int seconds = -1;
    const char* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, seconds);
    const bool sound = failure == std::errc() && stop == end && seconds >= 0 && seconds <= kMax;
    if (sound) session.Own().SetTimeLimit(std::chrono::seconds(seconds));
  } catch (const DatabaseError&) {  // a book without settings
  }
}

/// A book held by others, or on a server where only its maker may change it, serves as it is.
void Renew(Session& session) {
  try {
    RenewSchema(session);
    TrimHistory(session);
  } catch (const DatabaseError&) {  // the next who opens it tries again
  }
}

}  // namespace

Book::Book(std::shared_ptr<Session> session)
    : session_(std::move(session)), environment_(std::make_shared<HostEnvironment>()) {}

Book Book::Create(const std::string& path, const Template& content, const Filling& furnish) {
  return Book(EngineFor(path).Make({.path = path}, [&](Session& session) {
    Fill(session, content);
    if (furnish) furnish(session);
  }));
}

Book Book::Open(const std::string& path) {
  return Open(Place{.path = path});
}

Book Book::Open(const Place& place) {
  Book book(std::make_shared<Session>(EngineFor(place.path).Open(place)));
  book.faults_ = CheckSchema(book.session_->Own(), ShownPlace(place.path));
  ApplyTimeLimit(*book.session_);
  Renew(*book.session_);
  return book;
}

std::shared_ptr<host::SystemObject> Book::System() const {
  return std::make_shared<HostSystem>(session_, environment_);
}

std::string Book::Setting(const std::string& section, const std::string& key) const {
  return ReadSetting(*session_, section, key);
}

void Book::SetSetting(const std::string& section, const std::string& key,
                      const std::string& value) {
  WriteSetting(*session_, section, key, value);
}

}  // namespace desk::book
