#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "book/odbc/odbc_channel.h"
#include "book/odbc/odbc_rows.h"
#include "book/sql/sql_guard.h"

namespace desk::book {

/// A book on a server. When the server has gone away the statement under way fails with
/// `ErrorKind::kGone`, and the next one outside a transaction connects anew. No statement that
/// changes anything is sent twice: whether one that failed so has been carried out, nobody knows.
class OdbcConnection : public Connection {
 public:
  explicit OdbcConnection(const Place& place);

  [[nodiscard]] std::unique_ptr<Rows> Query(const std::string& sql, Origin origin,
                                            Values parameters) override;
  std::int64_t Execute(const std::string& sql, Origin origin, Values parameters) override;
  [[nodiscard]] Ending Start(const std::string& sql, std::vector<host::Value> parameters) override;
  void Begin() override;
  void Commit() override;
  void Rollback() noexcept override;
  [[nodiscard]] std::string Driver() const override;
  [[nodiscard]] SqlDialect Dialect() const override { return channel_->Server(); }
  [[nodiscard]] bool ReadOnly() const override { return !why_read_only_.empty(); }
  [[nodiscard]] bool HasTable(std::string_view table) override;
  [[nodiscard]] bool HasColumn(std::string_view table, std::string_view column) override;
  [[nodiscard]] int SchemaVersion() override;
  void SetSchemaVersion(int version) override;
  [[nodiscard]] Wire Encryption() const override { return wire_; }
  void SetTimeLimit(std::chrono::milliseconds limit) override;
  [[nodiscard]] std::chrono::milliseconds TimeLimit() const override { return place_.time_limit; }

 private:
  void Connect();
  void SetUp();
  /// What a server says of itself decides whether its book can be kept there, and how.
  void JudgeServer();
  void JudgePostgres();
  /// `DatabaseError` when nothing may be changed.
  void CheckWritable() const;
  void CheckTexts();
  void MakeReady();
  [[nodiscard]] std::unique_ptr<OdbcRows> Read(const std::string& sql, Values parameters);
  /// A query whose connection has gone is sent once more over a new one: it changes nothing.
  [[nodiscard]] std::unique_ptr<OdbcRows> ReadAgain(const std::string& sql, Values parameters);
  using PendingChange = OdbcChannel::Pending<std::int64_t>;
  std::int64_t Change(const std::string& sql, Values parameters);
  [[nodiscard]] PendingChange StartChange(const std::string& sql,
                                          std::vector<host::Value> parameters);
  std::int64_t FinishChange(const PendingChange& change);
  /// Throws `error`, of a statement that changes something, with what is not known of it.
  [[noreturn]] void FailChange(const DatabaseError& error);
  [[nodiscard]] std::string Info(SQLUSMALLINT what) const;
  void SetAutocommit(bool on);
  void End(SQLSMALLINT how);
  [[nodiscard]] bool FindTable(const std::string& table);
  void TakeWriteLock();
  /// Nothing where the version was never set.
  [[nodiscard]] std::optional<int> StoredVersion();

  Place place_;
  std::shared_ptr<OdbcChannel> channel_;
  std::string why_read_only_;  ///< empty where changes are welcome
  Wire wire_ = Wire::kUnknown;
  bool in_transaction_ = false;
  bool failed_ = false;           ///< a statement of the transaction under way has failed
  std::set<std::string> tables_;  ///< known to be there
  StatementGuard statements_{*this};
};

}  // namespace desk::book
