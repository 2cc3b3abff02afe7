#pragma once

#include "com/variant.h"
#include "host/value.h"

namespace tavrix::com {

/// An Automation value as `host::Value`. What that has no type for (dates,
/// decimals, currency, objects, arrays) is carried through unchanged.
[[nodiscard]] host::Value ToValue(const Variant& value);
/// A value that is only handed on: it comes back from `ToVariant` just as it was.
[[nodiscard]] host::Value PassThrough(Variant value);
/// And back; null as Empty. Whole numbers become a Long where they fit, which every language
/// understands.
[[nodiscard]] Variant ToVariant(const host::Value& value);

}  // namespace tavrix::com
