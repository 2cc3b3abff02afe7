#pragma once

#include <memory>
#include <string>

#include "host/error.h"
#include "host/objects.h"

/// The one layer through which the views call the host. A missing object becomes a `HostError`.
/// The database object is asked for afresh before every statement and never kept.
namespace tavrix::host {

/// `object`, or a `HostError` that names what the host did not provide.
template <class Object>
[[nodiscard]] std::shared_ptr<Object> Required(std::shared_ptr<Object> object, const char* what);

[[nodiscard]] std::shared_ptr<Database> DatabaseOf(SystemObject& system);

/// The text of setting `key` of section "system"; empty when it is absent.
[[nodiscard]] std::string SettingText(SystemObject& system, std::string_view key);

/// First column of the first row of `sql`.
[[nodiscard]] Value QueryScalar(SystemObject& system, const std::string& sql);

/// The number that a counting query gives; a `HostError` when it gives none.
[[nodiscard]] double QueryCount(SystemObject& system, const std::string& sql);

[[nodiscard]] std::shared_ptr<Recordset> QueryRows(SystemObject& system, const std::string& sql);

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
