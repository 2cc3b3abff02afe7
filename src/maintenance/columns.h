#pragma once

namespace tavrix::maintenance {

/// Columns of the account grids. Those from `kId` on are hidden.
enum Column { kCode, kName, kCurrency, kAuxiliary, kId, kLevel, kCategory, kColumns };

}  // namespace tavrix::maintenance
