#pragma once

#include "com/variant.h"
#include "host/row_set.h"
#include "qnSystem.h"

namespace tavrix::component {

/// The two-dimensional array (field, record) of a recordset's `GetRows`, its text converted once
/// and directly. Null strings are empty texts. Throws `ComFailure` when it is no such array.
[[nodiscard]] host::RowSet ToRowSet(const com::Variant& rows);
/// As `ToRowSet`, from a recordset that hands out its texts in one piece.
[[nodiscard]] host::RowSet TakeRowTexts(IHostRowTexts& recordset);

}  // namespace tavrix::component
