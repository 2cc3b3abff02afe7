#pragma once

namespace desk::views {

/// The desk's own pictures by name. The order is that of the image lists made of them.
enum class Icon {
  kNone = -1,
  kNewBook,
  kOpenBook,
  kAddSibling,
  kAddChild,
  kEdit,
  kDelete,
  kFirst,
  kPrevious,
  kNext,
  kLast,
  kFind,
  kFilter,
  kRefresh,
  kVoucher,
  kReports,
  kDetails,
  kMore,
  kError,
  kWarning,
  kClose,
  kCollapse,
  kExpand,
  kLedger,
};
inline constexpr int kIconCount = static_cast<int>(Icon::kLedger) + 1;

}  // namespace desk::views
