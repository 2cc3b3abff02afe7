#pragma once

#include "component/base/variant.h"
#include "host/row_set.h"
#include "host/value.h"
#include "qnSystem.h"

namespace tavrix::component {

/// An Automation value as the library knows values. What the library has no type for (dates,
/// decimals, currency, objects, arrays) is carried through unchanged.
[[nodiscard]] host::Value ToValue(const Variant& value);
/// A value that the library only hands on: it comes back from `ToVariant` just as it was.
[[nodiscard]] host::Value Carried(Variant value);
/// And back; null as Empty. Whole numbers become a Long where they fit, which every language
/// understands.
[[nodiscard]] Variant ToVariant(const host::Value& value);

/// The two-dimensional array (field, record) of a recordset's `GetRows`, its text converted once
/// and directly. Null strings are empty texts. Throws `ComFailure` when it is no such array.
[[nodiscard]] host::RowSet ToRowSet(const Variant& rows);
/// As `ToRowSet`, from a recordset that hands out its texts in one piece.
[[nodiscard]] host::RowSet TakeRowTexts(IHostRowTexts& recordset);

}  // namespace tavrix::component
