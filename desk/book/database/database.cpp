#include "book/database/database.h"

#include "host/number_text.h"
#include "host/text.h"

namespace desk::book {

void PassCell(const host::Value& value, CellSink& sink) {
  if (value.IsNull()) return sink.OnNull();
  if (const auto* integer = std::get_if<std::int64_t>(&value.Raw()))
    return sink.OnInteger(*integer);
  if (const auto* number = std::get_if<double>(&value.Raw())) return sink.OnNumber(*number);
  sink.OnText(value.ToText());
}

void RowSetSink::OnNumber(double number) {
  rows_.AppendText(host::NumberText(number));
}

Ending Connection::Start(const std::string& sql, std::vector<host::Value> parameters) {
  Execute(sql, Origin::kDesk, parameters);
  return [] {};
}

}  // namespace desk::book
