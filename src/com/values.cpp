#include "com/values.h"

#include <windows.h>

#include <oleauto.h>

#include <limits>

#include "com/failure.h"
#include "host/number_text.h"
#include "host/overloaded.h"
#include "host/text.h"

namespace tavrix::com {

namespace {

/// A value that is carried through.
class ForeignVariant : public host::ForeignValue {
 public:
  explicit ForeignVariant(Variant value) : value_(std::move(value)) {}
  [[nodiscard]] const Variant& Get() const { return value_; }

  [[nodiscard]] std::string ToText() const override;
  [[nodiscard]] double ToNumber() const override;
  [[nodiscard]] bool IsObject() const override;

 private:
  Variant value_;
};

/// In the form that sorts, whatever the country.
std::string DateText(DATE date) {
  SYSTEMTIME time{};
  if (!VariantTimeToSystemTime(date, &time)) return {};
  char text[32];
  const int length =
      snprintf(text, sizeof text, "%04u-%02u-%02u", time.wYear, time.wMonth, time.wDay);
  const bool midnight = time.wHour == 0 && time.wMinute == 0 && time.wSecond == 0;
  if (midnight) return {text, static_cast<std::size_t>(length)};
  char clock[16];
  snprintf(clock, sizeof clock, " %02u:%02u:%02u", time.wHour, time.wMinute, time.wSecond);
  return std::string(text) + clock;
}

std::string ForeignVariant::ToText() const {
  if (value_.Type() == VT_DATE) return DateText(value_.Get().date);
  try {
    return TextOf(value_.As(VT_BSTR).Get().bstrVal);
  } catch (const ComFailure&) {  // an array, an object without a value: there is no text
    return {};
  }
}

double ForeignVariant::ToNumber() const {
  try {
    return value_.As(VT_R8).Get().dblVal;
  } catch (const ComFailure&) {
    return host::LeadingNumber(ToText());
  }
}

bool ForeignVariant::IsObject() const {
  if (value_.Type() == VT_DATE) return false;
  try {
    static_cast<void>(value_.As(VT_BSTR));
    return false;
  } catch (const ComFailure&) {
    return true;
  }
}

host::Value FromUnsigned(ULONGLONG number) {
  constexpr auto kMax = static_cast<ULONGLONG>(std::numeric_limits<std::int64_t>::max());
  if (number > kMax) return static_cast<double>(number);
  return static_cast<std::int64_t>(number);
}

}  // namespace

host::Value ToValue(const Variant& value) {
  const VARIANT& raw = value.Get();
  switch (raw.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return {};
    case VT_BOOL:
      return raw.boolVal != VARIANT_FALSE;
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_INT:
    case VT_UINT:
      return std::int64_t{value.As(VT_I8).Get().llVal};
    case VT_UI8:
      return FromUnsigned(raw.ullVal);
    case VT_R4:
      return host::Widened(raw.fltVal);
    case VT_R8:
      return raw.dblVal;
    case VT_BSTR:
      return TextOf(raw.bstrVal);
    default:
      return host::Value(std::make_shared<ForeignVariant>(value));
  }
}

host::Value PassThrough(Variant value) {
  return host::Value(std::make_shared<ForeignVariant>(std::move(value)));
}

namespace {

Variant FromInteger(std::int64_t number) {
  const auto narrow = static_cast<std::int32_t>(number);
  return narrow == number ? Variant(narrow) : Variant(static_cast<double>(number));
}

Variant FromForeign(const host::ForeignValue& value) {
  const auto* foreign = dynamic_cast<const ForeignVariant*>(&value);
  return foreign != nullptr ? foreign->Get() : Variant(std::string_view(value.ToText()));
}

}  // namespace

Variant ToVariant(const host::Value& value) {
  return std::visit(
      host::Overloaded{[](std::monostate) { return Variant(); },
                       [](bool flag) { return Variant(flag); },
                       [](std::int64_t number) { return FromInteger(number); },
                       [](double number) { return Variant(number); },
                       [](const std::string& text) { return Variant(std::string_view(text)); },
                       [](const std::shared_ptr<const host::ForeignValue>& foreign) {
                         return FromForeign(*foreign);
                       }},
      value.Raw());
}

}  // namespace tavrix::com
