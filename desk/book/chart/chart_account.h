#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "book/session/session.h"
#include "book/session/settings.h"

/// Accounts as they are rearranged.
namespace desk::book {

/// Department, person, customer, supplier and project, in the order of an account's flags.
inline constexpr int kPartnerKinds = 5;
inline constexpr std::array<const char*, kPartnerKinds> kPartnerNames = {"部门", "个人", "客户",
                                                                         "供应商", "项目"};
/// The columns of vouchers and of the auxiliary ledger that name them.
inline constexpr std::array<const char*, kPartnerKinds> kPartnerColumns = {
    "department", "person", "customer", "supplier", "project"};

struct ChartAccount {
  std::int64_t id = 0;
  std::string code = {};
  std::string name = {};
  std::string category = {};
  bool debit_side = false;
  bool leaf = false;
  bool sealed = false;
  std::array<bool, kPartnerKinds> partners = {};
  std::string currency = {};  ///< empty unless it is kept in a foreign one
  std::string unit = {};
  std::string gather = {};  ///< the account that this one is summarised into
  friend bool operator==(const ChartAccount&, const ChartAccount&) = default;
};

/// "1001 库存现金".
[[nodiscard]] std::string TitleOf(const ChartAccount& account);

/// From a code, and what begins with it, up to what comes behind.
[[nodiscard]] std::array<host::Value, 2> RangeOf(const std::string& code);
/// The condition that takes these two.
inline constexpr char kInRange[] = "ccode>=? and ccode<?";

/// All of it throws `DatabaseError`.
[[nodiscard]] std::optional<ChartAccount> FindAccount(Session& session, const std::string& code);
/// The account of that code and all below it, in order of their codes; empty when it is not there.
[[nodiscard]] std::vector<ChartAccount> ReadSubtree(Session& session, const std::string& code);
/// All accounts, in order of their codes.
[[nodiscard]] std::vector<ChartAccount> ReadChart(Session& session);

/// What the ledgers hold of some accounts.
struct PostingCount {
  std::int64_t entries = 0;    ///< lines of vouchers
  std::int64_t auxiliary = 0;  ///< rows of the auxiliary ledger
  std::int64_t totals = 0;     ///< rows of the monthly totals
  std::int64_t debit = 0;      ///< hundredths, by the monthly totals
  std::int64_t credit = 0;
  [[nodiscard]] std::int64_t Rows() const { return entries + auxiliary + totals; }
};

[[nodiscard]] PostingCount CountPostings(Session& session, const std::string& code,
                                         bool with_all_below);
/// Whether any ledger has rows on this code, or, where wanted, on one that begins with it.
[[nodiscard]] bool IsPosted(Session& session, const std::string& code, bool or_below);

/// Accounts are rearranged only where the engine keeps the rules of chart and ledgers.
[[nodiscard]] bool CanRearrange(Session& session);

/// Before the transaction: afterwards others wait for it also in a book of another maker.
void PrepareRearranging(Session& session);
/// Inside it: makes an account a leaf that has no others below it any more. The rules of the desk's
/// own books have seen to it already, unless they pause.
void SetLeafIfLast(Session& session, const std::string& parent);

/// A command that cannot be carried out, with its reason.
[[noreturn]] void RefuseChange(const std::string& text);

}  // namespace desk::book
