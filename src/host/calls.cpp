#include "host/calls.h"

#include "host/account.h"
#include "host/text.h"

namespace tavrix::host {

void ThrowMissing(const char* what) {
  throw HostError(std::string("主程序没有提供：") + what);
}

std::shared_ptr<Database> DatabaseOf(SystemObject& system) {
  return Required(system.GetDatabase(), "GetDatabase");
}

std::string SettingText(SystemObject& system, std::string_view key) {
  return Required(system.GetSetting(std::string(key), std::string(kSystemSection)), "GetSetting")
      ->Get();
}

namespace {

std::shared_ptr<Statement> OpenStatement(Database& database, const std::string& sql) {
  return Required(database.OpenSql(sql, kStatementMode), "OpenSql");
}

}  // namespace

double RequiredNumber(const Value& value, const char* what) {
  const auto number = value.Number();
  if (!number) ThrowMissing(what);
  return *number;
}

std::string RequiredText(const Value& value, const char* what) {
  const bool flag = std::holds_alternative<bool>(value.Raw());
  if (value.IsNull() || flag || value.IsObject()) ThrowMissing(what);
  return value.ToText();
}

std::int32_t RequiredLong(const Value& value, const char* what) {
  return ToLong32(RequiredNumber(value, what));
}

Value NoObject(Value value, const char* what) {
  if (value.IsObject()) ThrowMissing(what);
  return value;
}

Value QueryScalar(SystemObject& system, const std::string& sql) {
  const auto database = DatabaseOf(system);
  return NoObject(OpenStatement(*database, sql)->ScalarValue(), "ScalarValue");
}

double QueryCount(SystemObject& system, const std::string& sql) {
  return RequiredNumber(QueryScalar(system, sql), "ScalarValue");
}

OpenRows QueryRows(SystemObject& system, const std::string& sql) {
  const auto database = DatabaseOf(system);
  return OpenRows(Required(OpenStatement(*database, sql)->OpenRecordset(), "Recordset"));
}

RowSet GivenRows(Recordset& rows, std::size_t columns) {
  RowSet given = rows.GetRows();
  if (given.Columns() < columns) ThrowMissing("GetRows");
  return given;
}

Value ReadField(Recordset& rows, const std::string& name) {
  return NoObject(rows.Field(name), name.c_str());
}

Value RequiredField(Recordset& rows, const std::string& name) {
  Value field = ReadField(rows, name);
  if (field.IsNull()) ThrowMissing(name.c_str());
  return field;
}

std::string ExecuteSql(SystemObject& system, const std::string& sql) {
  const auto database = DatabaseOf(system);
  OpenStatement(*database, sql)->Execute();
  return Required(database->LastError(), "LastError")->Description();
}

Dialect DialectOf(SystemObject& system) {
  const auto properties =
      Required(DatabaseOf(system)->ConnectionProperties(), "ConnectionProperties");
  const auto driver = Required(properties->Item("driver"), "driver");
  return NoObject(driver->Get(), "driver").ToText() == "jet" ? Dialect::kJet : Dialect::kServer;
}

}  // namespace tavrix::host
