#include "views/typed_account.h"

#include "host/error.h"
#include "host/text.h"
#include "views/posting_account.h"

namespace desk::views {

namespace host = tavrix::host;

std::string TypedAccountCode(book::Session& session, std::string_view typed) {
  const std::string text(host::Trimmed(typed));
  if (const auto account = FindPostingAccount(session, text)) return account->code;
  const std::vector<PostingAccount> found = FindTypedAccounts(session, text);
  if (found.empty()) throw host::HostError("没有编码、名称或助记码为“" + text + "”的科目");
  if (found.size() == 1) return found.front().code;
  throw host::HostError("有" + std::to_string(found.size()) + "个科目符合“" + text + "”（" +
                        found[0].code + "、" + found[1].code + "……），请键入编码");
}

}  // namespace desk::views
