#include "book/host/database_object.h"

#include <exception>
#include <type_traits>
#include <utility>

#include "book/host/recordset.h"
#include "book/sql/quote_check.h"
#include "host/report.h"

namespace desk::book {

namespace {

class SqlStatement : public host::Statement {
 public:
  SqlStatement(std::shared_ptr<Session> session, std::shared_ptr<std::string> last_error,
               std::string sql)
      : session_(std::move(session)), last_error_(std::move(last_error)), sql_(std::move(sql)) {}

  void Execute() override {
    last_error_->clear();
    try {
      session_->Execute(sql_);
    } catch (const std::exception& error) {
      *last_error_ = Explained(error);
    }
  }

  [[nodiscard]] host::Value ScalarValue() override {
    return Noting([this] {
      const auto rows = session_->Query(sql_);
      return rows->Next() ? rows->Get(0) : host::Value();
    });
  }

  [[nodiscard]] std::shared_ptr<host::Recordset> OpenRecordset() override {
    return Noting([this]() -> std::shared_ptr<host::Recordset> {
      return std::make_shared<SnapshotRecordset>(session_, sql_);
    });
  }

 private:
  template <class Body>
  std::invoke_result_t<const Body&> Noting(const Body& body) {
    last_error_->clear();
    try {
      return body();
    } catch (const DatabaseError& error) {
      *last_error_ = Explained(error);
      throw DatabaseError(error.Kind(), *last_error_);
    } catch (const std::exception& error) {
      *last_error_ = host::ErrorText(error);
      throw;
    }
  }

  /// A quote in a text spoils the statement; what is said of that would not tell users why.
  [[nodiscard]] std::string Explained(const std::exception& error) const {
    const std::string text = host::ErrorText(error);
    return HasQuoteInText(sql_) ? std::string(kQuoteInText) + "：" + text : text;
  }

  std::shared_ptr<Session> session_;
  std::shared_ptr<std::string> last_error_;
  std::string sql_;
};

class LastErrorEntry : public host::ErrorEntry {
 public:
  explicit LastErrorEntry(std::shared_ptr<std::string> text) : text_(std::move(text)) {}
  [[nodiscard]] std::string Description() override { return *text_; }
  void Clear() override { text_->clear(); }

 private:
  std::shared_ptr<std::string> text_;
};

/// Knows "driver"; every other property is null.
class ConnectionPropertySet : public host::PropertySet {
 public:
  explicit ConnectionPropertySet(std::shared_ptr<Session> session) : session_(std::move(session)) {}
  [[nodiscard]] std::shared_ptr<host::Property> Item(const std::string& key) override {
    const bool driver = key == "driver";
    return std::make_shared<Given<host::Property, host::Value>>(
        driver ? host::Value(session_->Driver()) : host::Value());
  }

 private:
  std::shared_ptr<Session> session_;
};

}  // namespace

DatabaseObject::DatabaseObject(std::shared_ptr<Session> session)
    : session_(std::move(session)), last_error_(std::make_shared<std::string>()) {}

std::shared_ptr<host::Statement> DatabaseObject::OpenSql(const std::string& sql, int) {
  return std::make_shared<SqlStatement>(session_, last_error_, sql);
}

std::shared_ptr<host::ErrorEntry> DatabaseObject::LastError() {
  return std::make_shared<LastErrorEntry>(last_error_);
}

std::shared_ptr<host::PropertySet> DatabaseObject::ConnectionProperties() {
  return std::make_shared<ConnectionPropertySet>(session_);
}

}  // namespace desk::book
