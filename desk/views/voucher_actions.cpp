#include "views/voucher_actions.h"

#include <utility>

#include "views/reverse_dialog.h"

namespace desk::views {

VoucherActions::VoucherActions(book::Session& session, viewkit::UserPort& user, Calls calls)
    : session_(session), user_(user), calls_(std::move(calls)) {}

void VoucherActions::Open(const book::VoucherKey& key) const {
  if (calls_.open) calls_.open(key);
}

void VoucherActions::OpenAccount(const std::string& code) const {
  if (!code.empty() && calls_.open_account) calls_.open_account(code);
}

void VoucherActions::Copy(const book::VoucherKey& key) const {
  if (const auto of = book::ReversalOf(session_, key).of) {
    // Its lines would take the same voucher back once more.
    throw book::DatabaseError(
        book::ErrorKind::kRefused,
        book::VoucherName(key) + "是冲销凭证（冲销 " + book::VoucherName(*of) + "），不能复制");
  }
  const auto voucher = book::ReadVoucher(session_, key);
  if (voucher && calls_.enter) calls_.enter(*voucher);
}

std::optional<book::VoucherKey> VoucherActions::Reverse(const book::VoucherKey& key) const {
  const std::string why = book::WhyNoReversal(key, book::ReversalOf(session_, key));
  if (!why.empty()) throw book::DatabaseError(book::ErrorKind::kRefused, why);
  ReverseDialog dialog(book::VoucherName(key), calls_.today());
  user_.ShowModal(dialog);
  if (!dialog.Accepted()) return std::nullopt;
  const std::chrono::year_month_day date = dialog.Date();
  return book::Reverse(session_, key,
                       {.year = static_cast<int>(date.year()),
                        .month = static_cast<int>(static_cast<unsigned>(date.month())),
                        .day = static_cast<int>(static_cast<unsigned>(date.day()))});
}

}  // namespace desk::views
