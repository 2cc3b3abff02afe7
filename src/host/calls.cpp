#include "host/calls.h"

#include "host/account.h"

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

Value QueryScalar(SystemObject& system, const std::string& sql) {
  const auto database = DatabaseOf(system);
  return OpenStatement(*database, sql)->ScalarValue();
}

double QueryCount(SystemObject& system, const std::string& sql) {
  const Value count = QueryScalar(system, sql);
  if (count.IsNull()) ThrowMissing("ScalarValue");
  return count.ToNumber();
}

std::shared_ptr<Recordset> QueryRows(SystemObject& system, const std::string& sql) {
  const auto database = DatabaseOf(system);
  return Required(OpenStatement(*database, sql)->OpenRecordset(), "Recordset");
}

Value RequiredField(Recordset& rows, const std::string& name) {
  Value field = rows.Field(name);
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
  return driver->Get().ToText() == "jet" ? Dialect::kJet : Dialect::kServer;
}

}  // namespace tavrix::host
