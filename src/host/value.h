#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tavrix::host {

/// A value that only the caller's side can represent fully: a date, a decimal, an object, an array.
/// It is carried through unchanged and can still be read as text or number.
class ForeignValue {
 public:
  virtual ~ForeignValue() = default;
  [[nodiscard]] virtual std::string ToText() const = 0;
  [[nodiscard]] virtual double ToNumber() const = 0;
  /// There is no value in it: an object without one, an array. Its text is empty, its number 0.
  [[nodiscard]] virtual bool IsObject() const { return false; }
};

/// One value that passes between the host and the library: a field, a scalar, an argument.
/// Text is UTF-8. A default-constructed value is null; Automation's Empty counts as null too.
class Value {
 public:
  Value() = default;
  Value(bool flag) : data_(flag) {}
  Value(int number) : data_(std::int64_t{number}) {}
  Value(std::int64_t number) : data_(number) {}
  Value(double number) : data_(number) {}
  Value(std::string text) : data_(std::move(text)) {}
  Value(std::string_view text) : data_(std::string(text)) {}
  Value(const char* text) : data_(std::string(text)) {}
  Value(std::shared_ptr<const ForeignValue> value);

  [[nodiscard]] bool IsNull() const { return std::holds_alternative<std::monostate>(data_); }
  /// An object or an array, which is neither a number nor a text.
  [[nodiscard]] bool IsObject() const;

  /// Null gives an empty text, a flag "True" or "False", a number its shortest decimal form.
  [[nodiscard]] std::string ToText() const;

  /// Lenient: text gives its leading number, null 0, and a set flag -1 as Automation counts it.
  [[nodiscard]] double ToNumber() const;

  /// For a value that decides something: a number, or that of a text that starts with one. Nothing
  /// for null, a flag, any other text, an object.
  [[nodiscard]] std::optional<double> Number() const;

  /// The number truncated towards zero and held within 32 bits' range; not-a-number gives 0.
  [[nodiscard]] std::int32_t ToLong() const;

  using Data = std::variant<std::monostate, bool, std::int64_t, double, std::string,
                            std::shared_ptr<const ForeignValue>>;
  [[nodiscard]] const Data& Raw() const { return data_; }

 private:
  Data data_;
};

}  // namespace tavrix::host
