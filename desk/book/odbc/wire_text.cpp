#include "book/odbc/wire_text.h"

#include "book/database/connection_string.h"

namespace desk::book {

namespace {

struct WireTexts {
  const char* mark;
  const char* sentence;
};

/// In the order of `Wire`.
constexpr WireTexts kTexts[] = {{"", ""},
                                {"", "数据库服务器没有说明连接是否加密。"},
                                {"本机，未加密", "与数据库服务器的连接没有加密，但不离开本机。"},
                                {"未加密", "与数据库服务器的连接没有加密。"},
                                {"已加密", "与数据库服务器的连接已加密。"}};

const WireTexts& TextsOf(Wire wire) {
  return kTexts[static_cast<std::size_t>(wire)];
}

}  // namespace

std::string WireMark(Wire wire) {
  return TextsOf(wire).mark;
}

std::string WireSentence(Wire wire) {
  return TextsOf(wire).sentence;
}

std::string WireWarning(Wire wire, std::string_view place) {
  if (wire != Wire::kPlain) return {};
  return "与数据库服务器“" + ServerName(place) +
         "”的连接没有加密，网络上的其他人可以读到账簿的内容。请让管理员为服务器设置加密，"
         "或在连接字符串中写明 SSLmode=require，使没有加密时不能连接";
}

}  // namespace desk::book
