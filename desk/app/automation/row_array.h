#pragma once

#include <windows.h>

#include <oleauto.h>

#include "book/host/recordset.h"

namespace desk::app {

/// All rows of `rows` from the current one on as a two-dimensional array (field, record) of values:
/// whole numbers as Long, empty texts as the null BSTR, nulls as Null. The caller owns the array.
[[nodiscard]] SAFEARRAY* ArrayOfRows(book::SnapshotRecordset& rows);

}  // namespace desk::app
