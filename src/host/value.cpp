#include "host/value.h"

#include "host/number_text.h"
#include "host/overloaded.h"
#include "host/text.h"

namespace tavrix::host {

Value::Value(std::shared_ptr<const ForeignValue> value) {
  if (value) data_ = std::move(value);
}

std::string Value::ToText() const {
  return std::visit(
      Overloaded{[](std::monostate) { return std::string(); },
                 [](bool flag) { return std::string(flag ? "True" : "False"); },
                 [](std::int64_t number) { return std::to_string(number); },
                 [](double number) { return NumberText(number); },
                 [](const std::string& text) { return text; },
                 [](const std::shared_ptr<const ForeignValue>& value) { return value->ToText(); }},
      data_);
}

double Value::ToNumber() const {
  return std::visit(
      Overloaded{
          [](std::monostate) { return 0.0; }, [](bool flag) { return flag ? -1.0 : 0.0; },
          [](std::int64_t number) { return static_cast<double>(number); },
          [](double number) { return number; },
          [](const std::string& text) { return LeadingNumber(text); },
          [](const std::shared_ptr<const ForeignValue>& value) { return value->ToNumber(); }},
      data_);
}

bool Value::IsObject() const {
  const auto* foreign = std::get_if<std::shared_ptr<const ForeignValue>>(&data_);
  return foreign != nullptr && (*foreign)->IsObject();
}

std::optional<double> Value::Number() const {
  if (IsNull() || std::holds_alternative<bool>(data_)) return {};
  if (!NumberAtStart(ToText())) return {};
  return ToNumber();
}

std::int32_t Value::ToLong() const {
  return ToLong32(ToNumber());
}

}  // namespace tavrix::host
