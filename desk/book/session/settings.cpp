#include "book/session/settings.h"

#include "host/account.h"

namespace desk::book {

std::string ReadSetting(Session& session, const std::string& section, const std::string& key) {
  const host::Value names[] = {section, key};
  const auto rows = session.Own().Query(
      "select item_value from xt_accinformation where system_code=? and item_code=?", Origin::kDesk,
      names);
  return rows->Next() ? rows->Get(0).ToText() : std::string();
}

std::string ReadCodeRule(Session& session) {
  return ReadSetting(session, std::string(host::kSystemSection),
                     std::string(host::kCodeRuleSetting));
}

void PutSetting(Connection& connection, const std::string& section, const std::string& key,
                const std::string& value) {
  const host::Value values[] = {section, key, value};
  connection.Execute("delete from xt_accinformation where system_code=? and item_code=?",
                     Origin::kDesk, Values(values).first(2));
  connection.Execute("insert into xt_accinformation(system_code,item_code,item_value)values(?,?,?)",
                     Origin::kDesk, values);
}

void WriteSetting(Session& session, const std::string& section, const std::string& key,
                  const std::string& value) {
  Transaction transaction(session);
  PutSetting(session.Own(), section, key, value);
  transaction.Commit();
}

}  // namespace desk::book
