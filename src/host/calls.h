#pragma once

#include <memory>
#include <string>
#include <utility>

#include "host/error.h"
#include "host/objects.h"
#include "host/report.h"

/// The one layer through which the views call the host. A missing object becomes a `HostError`.
/// The database object is asked for afresh before every statement and never kept.
namespace tavrix::host {

/// `object`, or a `HostError` that names what the host did not provide.
template <class Object>
[[nodiscard]] std::shared_ptr<Object> Required(std::shared_ptr<Object> object, const char* what);

[[nodiscard]] std::shared_ptr<Database> DatabaseOf(SystemObject& system);

/// The text of setting `key` of section "system"; empty when it is absent.
[[nodiscard]] std::string SettingText(SystemObject& system, std::string_view key);

/// What decides something is never guessed from what is no value: a `HostError` names `what` of the
/// host gave none. The number or the text of a value: null, a flag and an object have neither.
[[nodiscard]] double RequiredNumber(const Value& value, const char* what);
[[nodiscard]] std::string RequiredText(const Value& value, const char* what);
/// The whole number of a value, held within 32 bits' range.
[[nodiscard]] std::int32_t RequiredLong(const Value& value, const char* what);
/// `value` itself, which may be null but no object.
[[nodiscard]] Value NoObject(Value value, const char* what);

/// First column of the first row of `sql`; null, but never an object.
[[nodiscard]] Value QueryScalar(SystemObject& system, const std::string& sql);

/// The number that a counting query gives; a `HostError` when it gives none.
[[nodiscard]] double QueryCount(SystemObject& system, const std::string& sql);

/// A recordset that the holder has opened, and that is closed at the holder's end at the latest.
class OpenRows {
 public:
  explicit OpenRows(std::shared_ptr<Recordset> rows) : rows_(std::move(rows)) {}
  OpenRows(OpenRows&&) = default;
  OpenRows& operator=(OpenRows&&) = delete;
  ~OpenRows() {
    if (rows_) IgnoreErrors([this] { rows_->Close(); });
  }
  [[nodiscard]] Recordset& operator*() const { return *rows_; }
  [[nodiscard]] Recordset* operator->() const { return rows_.get(); }
  /// Ends the use of it. Throws `HostError`.
  void Close() { std::exchange(rows_, nullptr)->Close(); }

 private:
  std::shared_ptr<Recordset> rows_;
};
[[nodiscard]] OpenRows QueryRows(SystemObject& system, const std::string& sql);

/// What `read` gives for the recordset of `sql`, which is closed then, whatever has happened.
template <class Read>
[[nodiscard]] auto ReadRows(SystemObject& system, const std::string& sql, Read&& read) {
  OpenRows rows = QueryRows(system, sql);
  auto result = std::forward<Read>(read)(*rows);
  rows.Close();
  return result;
}

/// What `GetRows` gives of a statement that asks for `columns` columns. A `HostError` when rows
/// have fewer; surplus columns are nobody's concern.
[[nodiscard]] RowSet GivenRows(Recordset& rows, std::size_t columns);

/// A field, which may be null but no object.
[[nodiscard]] Value ReadField(Recordset& rows, const std::string& name);
/// A field that no row lacks; a `HostError` when it is null.
[[nodiscard]] Value RequiredField(Recordset& rows, const std::string& name);

/// The database's error text after running `sql`; empty on success. Read from the database object
/// that ran the statement.
[[nodiscard]] std::string ExecuteSql(SystemObject& system, const std::string& sql);

/// How statements differ between the two families of databases.
enum class Dialect { kJet, kServer };

/// Jet when the connection's "driver" property equals "jet", the server dialect otherwise. Asked
/// afresh wherever a statement differs.
[[nodiscard]] Dialect DialectOf(SystemObject& system);

[[noreturn]] void ThrowMissing(const char* what);

template <class Object>
std::shared_ptr<Object> Required(std::shared_ptr<Object> object, const char* what) {
  if (!object) ThrowMissing(what);
  return object;
}

}  // namespace tavrix::host
