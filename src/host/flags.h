#pragma once

#include <string_view>

#include "host/text.h"
#include "host/value.h"

/// Flags of the account table: numbers in most schemas, Booleans in some.
namespace tavrix::host {

[[nodiscard]] inline bool IsSet(std::string_view text) {
  return LeadingNumber(text) != 0 || EqualNoCase(text, "True");
}

[[nodiscard]] inline bool IsSet(const Value& value) {
  return value.ToNumber() != 0 || IsSet(std::string_view(value.ToText()));
}

/// The balance direction counts as debit for exactly 1, or true, as in the statements.
[[nodiscard]] inline bool IsOne(const Value& value) {
  return value.ToNumber() == 1 || EqualNoCase(value.ToText(), "True");
}

}  // namespace tavrix::host
