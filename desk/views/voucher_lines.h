#pragma once

#include <string>

#include "book/ledger/posting.h"
#include "book/session/session.h"
#include "viewkit/grid/flex_grid.h"

namespace desk::views {

namespace viewkit = tavrix::viewkit;

/// The lines of one posted voucher in a grid, with its sums below them.
class VoucherLines {
 public:
  enum Column {
    kSummary,
    kCode,
    kName,
    kPartner,  ///< as the next four only where lines have such a thing
    kCurrency,
    kForeign,
    kRate,
    kQuantity,
    kDebit,
    kCredit,
    kColumns
  };
  /// The grid must outlive it.
  explicit VoucherLines(viewkit::FlexGrid& grid);
  /// Throws what the book raises.
  void Show(book::Session& session, const book::Voucher& voucher);
  void Clear();
  /// The grid has another size.
  void Fit();
  /// The code of the chosen line's account; empty for none.
  [[nodiscard]] std::string ChosenCode() const;

 private:
  viewkit::FlexGrid& grid_;
};

/// "6.5214": what one unit of the foreign currency comes to; empty for none.
[[nodiscard]] std::string RateText(std::int64_t amount, std::int64_t foreign_amount);
/// "1,234.5"; empty for zero.
[[nodiscard]] std::string QuantityText(double quantity);

}  // namespace desk::views
