#pragma once

#include <string>

#include "book/book.h"

namespace desk::book {

/// A new book on a standard chart that a small trading company has kept for three months: vouchers
/// in all ledgers, with partners, foreign currency and quantities.
[[nodiscard]] Book CreateSampleBook(const std::string& path, StandardChart chart);

}  // namespace desk::book
