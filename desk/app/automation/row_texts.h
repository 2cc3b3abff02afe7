#pragma once

#include <windows.h>

#include <oleauto.h>

#include "book/host/recordset.h"

namespace desk::app {

/// The parts of a row set as `IHostRowTexts` hands them out; the caller owns both.
struct RowTexts {
  SAFEARRAY* ends = nullptr;
  BSTR text = nullptr;
};

/// All rows of `rows` from the current one on. Throws `std::bad_alloc`, also when their text is too
/// long for one string.
[[nodiscard]] RowTexts TextsOfRows(book::SnapshotRecordset& rows);

}  // namespace desk::app
