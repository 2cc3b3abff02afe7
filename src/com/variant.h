#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <string_view>
#include <utility>

#include "com/bstr.h"
#include "com/com_ptr.h"

namespace tavrix::com {

/// Owns an Automation value.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  explicit Variant(Bstr text);
  explicit Variant(std::string_view text) : Variant(Bstr(text)) {}
  explicit Variant(std::int32_t number);
  explicit Variant(double number);
  explicit Variant(bool flag);
  explicit Variant(const ComPtr<IDispatch>& object);
  /// A copy of what `value` holds, or refers to: never by reference itself. Throws `ComFailure`.
  explicit Variant(const VARIANT& value);
  [[nodiscard]] static Variant Null();
  /// What stands for an optional argument that is left out.
  [[nodiscard]] static Variant Missing();
  Variant(const Variant& other) : Variant(other.value_) {}
  Variant(Variant&& other) noexcept : value_(other.Detach()) {}
  Variant& operator=(const Variant& other) { return *this = Variant(other); }
  Variant& operator=(Variant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  [[nodiscard]] const VARIANT& Get() const { return value_; }
  [[nodiscard]] VARTYPE Type() const { return value_.vt; }
  /// For out-parameters: drops what is held first.
  [[nodiscard]] VARIANT* Put();
  /// The value itself, to be changed in place.
  [[nodiscard]] VARIANT* InPlace() { return &value_; }
  [[nodiscard]] VARIANT Detach();

  /// A value that refers to this one, for arguments by reference. Valid as long as this lives.
  [[nodiscard]] VARIANT Reference();
  /// This value as `type`, in the notation of no particular country. Throws `ComFailure`.
  [[nodiscard]] Variant As(VARTYPE type) const;
  /// The object it holds; null for anything else.
  [[nodiscard]] ComPtr<IDispatch> Object() const;

 private:
  VARIANT value_;
};

/// The system's functions that only read a value do not say so in their declarations.
[[nodiscard]] inline VARIANT* Readable(const VARIANT& value) {
  return const_cast<VARIANT*>(&value);
}

/// What `value` refers to, through any number of references.
[[nodiscard]] const VARIANT& Target(const VARIANT& value);

}  // namespace tavrix::com
