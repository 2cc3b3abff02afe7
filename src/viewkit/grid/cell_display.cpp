#include "viewkit/grid/cell_display.h"

#include "host/text.h"
#include "viewkit/grid/date_format.h"
#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

namespace {

/// A mark where it holds, nothing where it does not; what is neither stays.
std::string TruthMark(std::string_view text) {
  if (text == "1" || text == "-1" || host::EqualNoCase(text, "True")) return "✓";
  if (text == "0" || host::EqualNoCase(text, "False")) return {};
  return std::string(text);
}

std::string Formatted(std::string_view text, ColumnType type, const std::string& format) {
  if (type == ColumnType::kString) return std::string(text);
  if (type == ColumnType::kDate || (!IsNumeric(type) && IsDateFormat(format))) {
    const auto date = type == ColumnType::kDate ? DateOf(text) : WrittenDate(text);
    return date ? FormatDate(*date, format) : std::string(text);
  }
  const auto number = WholeNumber(text);
  return number ? FormatNumber(*number, format) : std::string(text);
}

}  // namespace

std::string DisplayOf(std::string_view text, ColumnType type, const std::string& format) {
  if (type == ColumnType::kBoolean) return TruthMark(text);
  if (format.empty()) return std::string(text);
  return Formatted(text, type, format);
}

}  // namespace tavrix::viewkit
