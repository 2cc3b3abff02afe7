#include "book/database.h"

namespace desk::book {

void PassCell(const host::Value& value, CellSink& sink) {
  if (value.IsNull()) return sink.OnNull();
  if (const auto* whole = std::get_if<std::int64_t>(&value.Raw())) return sink.OnWhole(*whole);
  if (const auto* number = std::get_if<double>(&value.Raw())) return sink.OnNumber(*number);
  sink.OnText(value.ToText());
}

}  // namespace desk::book
