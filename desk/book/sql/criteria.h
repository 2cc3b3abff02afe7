#pragma once

#include <string>
#include <string_view>

#include "host/value.h"

namespace desk::book {

namespace host = tavrix::host;

/// One comparison of a column with a text or a number, as a recordset's `Find` takes it:
/// "ccode='1001'", " igrade > 2", "[ccode] <> 'it''s'".
struct Criteria {
  enum class Relation { kEqual, kNotEqual, kLess, kGreater, kLessOrEqual, kGreaterOrEqual };
  std::string column;
  Relation relation = Relation::kEqual;
  bool is_text = false;
  std::string text;
  double number = 0;

  /// Throws `host::HostError` when `criteria` is none.
  [[nodiscard]] static Criteria Parse(std::string_view criteria);

  /// Texts compare without case, as the codes' key does; a null meets nothing.
  [[nodiscard]] bool Meets(const host::Value& value) const;
};

}  // namespace desk::book
