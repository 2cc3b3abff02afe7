#include "book/ledger/mnemonics.h"

#include "book/session/journal_command.h"

namespace desk::book {

std::vector<MnemonicAccount> ReadMnemonics(Session& session) {
  const auto rows = session.Own().Query(
      "select i_id,ccode,ccode_name,chelp from gl_code order by ccode", Origin::kDesk);
  std::vector<MnemonicAccount> accounts;
  while (rows->Next()) {
    accounts.push_back({.id = IntegerAt(*rows, 0),
                        .code = rows->Get(1).ToText(),
                        .name = rows->Get(2).ToText(),
                        .mnemonic = rows->Get(3).ToText()});
  }
  return accounts;
}

std::size_t WriteMnemonics(Session& session, const std::vector<NewMnemonic>& wanted) {
  if (wanted.empty()) return 0;
  Transaction transaction(session);
  const JournalCommand command(session, CommandKind::kMnemonics,
                               "补助记码：" + std::to_string(wanted.size()) + " 个科目");
  std::size_t written = 0;
  for (const NewMnemonic& each : wanted) {
    const MnemonicAccount& account = each.account;
    const host::Value parameters[] = {each.mnemonic, account.id, account.name, account.mnemonic};
    const std::int64_t met = session.Own().Execute(
        "update gl_code set chelp=? where i_id=? and ccode_name=? and coalesce(chelp,'')=?",
        Origin::kDesk, parameters);
    if (met > 0) ++written;
  }
  transaction.Commit();
  session.NoteChange();
  return written;
}

}  // namespace desk::book
