#include "book/ledger/account_search.h"

#include <algorithm>

namespace desk::book {

std::vector<std::string> CodesByMnemonic(Session& session, const FoldedPattern& pattern) {
  if (!session.Own().HasColumn("gl_code", "chelp")) return {};
  constexpr auto kFirst = "select min(chelp) from gl_code where chelp>''";  // by the index, at once
  const auto first = session.Own().Query(kFirst, Origin::kDesk);
  if (!first->Next() || first->Get(0).IsNull()) return {};
  // All of them: no engine compares without accents and widths as the pattern does.
  const auto rows =
      session.Own().Query("select ccode,chelp from gl_code where chelp<>''", Origin::kDesk);
  std::vector<std::string> codes;
  while (rows->Next()) {
    if (pattern.FoundIn(rows->Get(1).ToText())) codes.push_back(rows->Get(0).ToText());
  }
  std::ranges::sort(codes);
  return codes;
}

}  // namespace desk::book
