#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>
#include <utility>

namespace tavrix::com {

/// Owns an Automation string. A null string is an empty text.
class Bstr {
 public:
  Bstr() = default;
  /// From UTF-8. Throws `std::bad_alloc`.
  explicit Bstr(std::string_view text);
  explicit Bstr(std::wstring_view text);
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  Bstr(Bstr&& other) noexcept : text_(other.Detach()) {}
  Bstr& operator=(Bstr&& other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~Bstr() { SysFreeString(text_); }

  [[nodiscard]] BSTR Get() const { return text_; }
  [[nodiscard]] BSTR Detach() { return std::exchange(text_, nullptr); }
  /// For out-parameters, of a string that is still empty.
  [[nodiscard]] BSTR* Put() { return &text_; }

 private:
  BSTR text_ = nullptr;
};

/// A new string that the caller owns; an empty text is the null string. Throws `std::bad_alloc`.
[[nodiscard]] inline BSTR NewBstr(std::string_view text) {
  return text.empty() ? nullptr : Bstr(text).Detach();
}

/// The characters of an Automation string, which may be null and may hold zeros.
[[nodiscard]] std::wstring_view ViewOf(BSTR text);
/// As UTF-8.
[[nodiscard]] std::string TextOf(BSTR text);

}  // namespace tavrix::com
