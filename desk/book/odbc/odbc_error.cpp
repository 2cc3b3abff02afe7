#include "book/odbc/odbc_error.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "book/odbc/odbc_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

struct Diagnosis {
  std::string state;
  SQLINTEGER number = 0;  ///< the server's own
  std::string message;
};

Diagnosis FirstDiagnosis(SQLSMALLINT kind, SQLHANDLE handle) {
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 1024> text{};
  Diagnosis diagnosis;
  SQLSMALLINT length = 0;
  const SQLRETURN result =
      SQLGetDiagRecW(kind, handle, 1, state.data(), &diagnosis.number, text.data(),
                     static_cast<SQLSMALLINT>(text.size()), &length);
  if (!SQL_SUCCEEDED(result)) return diagnosis;
  diagnosis.state = FromWide(state.data(), 5);
  const auto most = static_cast<SQLSMALLINT>(text.size() - 1);
  diagnosis.message = FromWide(text.data(), static_cast<std::size_t>(std::min(length, most)));
  return diagnosis;
}

struct Meaning {
  ErrorKind kind = ErrorKind::kOther;
  std::string_view text;
};

constexpr Meaning kGoneMeaning = {ErrorKind::kGone, "与数据库服务器的连接已断开"};
constexpr Meaning kLockedMeaning = {ErrorKind::kLocked, "账簿正被其他用户使用，请稍后再试"};

bool IsLock(const Diagnosis& diagnosis, SqlDialect dialect) {
  constexpr std::array<std::string_view, 4> kStates = {"55P03", "40001", "40P01", "HYT00"};
  if (std::ranges::find(kStates, diagnosis.state) != kStates.end()) return true;
  if (dialect == SqlDialect::kSqlServer)
    return diagnosis.number == 1222 || diagnosis.number == 1205;
  return dialect == SqlDialect::kMariaDb && (diagnosis.number == 1205 || diagnosis.number == 1213);
}

bool IsDuplicate(const Diagnosis& diagnosis, SqlDialect dialect) {
  if (diagnosis.state == "23505") return true;
  switch (dialect) {
    case SqlDialect::kSqlServer:
      return diagnosis.number == 2627 || diagnosis.number == 2601;
    case SqlDialect::kMariaDb:
      return diagnosis.number == 1062;
    case SqlDialect::kAccess:
      return diagnosis.number == -1605;
    default:
      return false;
  }
}

struct Cause {
  std::string_view words;  ///< of the server or of what speaks to it
  std::string_view text;
};

/// PostgreSQL's driver has one state for every connection that fails; why it did stands in the
/// message alone. In another language than English the message has to do by itself.
constexpr std::array<Cause, 14> kConnectingCauses = {{
    {"password authentication failed", "用户名或密码不正确"},
    {"no password supplied", "数据库服务器要求密码，而连接字符串中没有"},
    {"authentication failed", "数据库服务器没有认可这个用户"},
    {"no pg_hba.conf entry", "数据库服务器不允许这样连接"},
    {"is not permitted to log in", "数据库服务器不允许这个用户连接"},
    {"permission denied for database", "没有使用账簿的权限"},
    {"role \"", "没有这个数据库用户"},
    {"database \"", "没有这个数据库"},
    {"server does not support SSL", "数据库服务器不支持加密，因此没有连接"},
    {"certificate verify failed", "不信任数据库服务器的证书，因此没有连接"},
    {"does not match host name", "数据库服务器的证书是给别的服务器的，因此没有连接"},
    {"root certificate", "没有检查数据库服务器的根证书，因此没有连接"},
    {"too many clients", "数据库服务器的连接已满，请稍后再试"},
    {"connection slots are reserved", "数据库服务器的连接已满，请稍后再试"},
}};

Meaning ConnectingMeaning(const std::string& message) {
  const auto* const cause = std::ranges::find_if(kConnectingCauses, [&](const Cause& one) {
    return message.find(one.words) != std::string::npos;
  });
  if (cause != kConnectingCauses.end()) return {ErrorKind::kOther, cause->text};
  return {ErrorKind::kGone, "不能连接数据库服务器"};
}

Meaning MeaningOf(const Diagnosis& diagnosis, SqlDialect dialect, bool connecting) {
  const std::string_view state = diagnosis.state;
  const bool late = connecting && state == "HYT00";  // of a statement it means a lock
  if (state == "08001" || late) return ConnectingMeaning(diagnosis.message);
  if (state == "57014") {
    return {ErrorKind::kOther, "语句超过了时间限制，或被管理员中止，没有生效"};
  }
  if (state.starts_with("08") || state.starts_with("57P") || state == "HYT01") return kGoneMeaning;
  if (IsLock(diagnosis, dialect)) return kLockedMeaning;
  if (IsDuplicate(diagnosis, dialect)) {
    const bool code = diagnosis.message.find("gl_code_code") != std::string::npos ||
                      diagnosis.message.find("gl_code_nocase") != std::string::npos;
    return {ErrorKind::kDuplicate, code ? "科目编码重复" : "数据重复"};
  }
  if (state.starts_with("23")) return {ErrorKind::kOther, "数据不符合账簿的规定"};
  if (state == "25006") return {ErrorKind::kReadOnly, "账簿是只读的，不能写入"};
  // 3F000: none of the schemas may be used.
  if (state == "42501" || state == "3F000") return {ErrorKind::kReadOnly, "没有使用账簿的权限"};
  if (state == "53100") return {ErrorKind::kFull, "服务器的磁盘已满，数据没有保存"};
  if (state == "42P01" || state == "42S02") return {ErrorKind::kOther, "账簿中没有这个表"};
  if (state == "42703" || state == "42S22") return {ErrorKind::kOther, "账簿中没有这个列"};
  if (state == "42601") return {ErrorKind::kOther, "语句有语法错误"};
  if (state == "IM002" || state == "IM003" || (connecting && state == "01000"))
    return {ErrorKind::kOther, "没有这个 ODBC 数据源或驱动程序"};
  if (state.starts_with("28")) return {ErrorKind::kOther, "用户名或密码不正确"};
  return {};
}

/// What a rule of the book has raised is a sentence for users; the server and the driver wrap it.
std::string RuleText(std::string_view message) {
  constexpr std::string_view kStart = "ERROR: ";
  if (message.starts_with(kStart)) message.remove_prefix(kStart.size());
  message = message.substr(0, message.find('\n'));
  if (message.ends_with(';')) message.remove_suffix(1);
  return std::string(message);
}

}  // namespace

SqlDialect FlavorOf(const std::string& server_name) {
  const std::string name = host::LowerCase(server_name);
  if (name.starts_with("postgres")) return SqlDialect::kPostgres;
  if (name == "microsoft sql server") return SqlDialect::kSqlServer;
  if (name == "access") return SqlDialect::kAccess;
  if (name == "mariadb" || name == "mysql") return SqlDialect::kMariaDb;
  return SqlDialect::kOther;
}

DatabaseError OdbcError(SQLSMALLINT kind, SQLHANDLE handle, SqlDialect dialect) {
  const Diagnosis diagnosis = FirstDiagnosis(kind, handle);
  if (diagnosis.state == "23001") return {ErrorKind::kRefused, RuleText(diagnosis.message)};
  const Meaning meaning = MeaningOf(diagnosis, dialect, kind == SQL_HANDLE_DBC);
  std::string text(meaning.text.empty() ? "数据库报告错误" : meaning.text);
  if (!diagnosis.message.empty()) text += "：" + diagnosis.message;
  return {meaning.kind, text};
}

}  // namespace desk::book
