#include "views/account_proposal.h"

#include <array>

namespace desk::views {

namespace {

constexpr int kCheckBoxes = 200;
constexpr int kLists = 400;

struct BoxOf {
  const char* column;
  int box;
  int list;  ///< -1 for none
};
/// In the order in which a user could tick them.
constexpr std::array kBoxes = {
    BoxOf{"bdept", 4, -1}, BoxOf{"bperson", 5, -1},  BoxOf{"bcus", 6, -1},
    BoxOf{"bsup", 7, -1},  BoxOf{"bitem", 8, -1},    BoxOf{"br", 9, -1},
    BoxOf{"be", 10, -1},   BoxOf{"bexchange", 1, 0}, BoxOf{"cmeasure", 2, 3}};

bool IsSet(const book::host::Value& value) {
  const std::string text = value.ToText();
  return !text.empty() && text != "0";
}

}  // namespace

std::optional<AccountProposal> ProposalBeside(book::Session& session, const std::string& code) {
  std::string sql = "select bproperty,cexch_name,cmeasure";
  for (const BoxOf& box : kBoxes) sql.append(",").append(box.column);
  const book::host::Value key(code);
  const auto row =
      session.Own().Query(sql + " from gl_code where ccode=?", book::Origin::kDesk, {&key, 1});
  if (!row->Next()) return std::nullopt;
  AccountProposal proposal{.debit = IsSet(row->Get(0))};
  constexpr int kFirstBox = 3;
  for (std::size_t i = 0; i < kBoxes.size(); ++i) {
    const BoxOf& box = kBoxes[i];
    if (!IsSet(row->Get(kFirstBox + static_cast<int>(i)))) continue;
    AccountProposal::Box& ticked =
        proposal.boxes.emplace_back(AccountProposal::Box{.control = kCheckBoxes + box.box});
    if (box.list < 0) continue;
    ticked.list = kLists + box.list;
    ticked.item = row->Get(box.list == 0 ? 1 : 2).ToText();
  }
  return proposal;
}

std::int64_t NewestAccount(book::Session& session) {
  const auto row = session.Own().Query("select max(i_id) from gl_code", book::Origin::kDesk);
  return row->Next() ? IntegerAt(*row, 0) : 0;
}

std::vector<std::string> NewerAccounts(book::Session& session, std::int64_t than) {
  const book::host::Value id(than);
  const auto rows = session.Own().Query("select ccode from gl_code where i_id>? order by i_id",
                                        book::Origin::kDesk, {&id, 1});
  std::vector<std::string> codes;
  while (rows->Next()) codes.push_back(rows->Get(0).ToText());
  return codes;
}

}  // namespace desk::views
