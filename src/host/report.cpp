#include "host/report.h"

#include <algorithm>
#include <stdexcept>

namespace tavrix::host {

namespace {

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::string ErrorText(const std::exception& error) {
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) return "内存不足";
  // Checks of positions and arguments speak to programmers, those of the standard library too,
  // unless they were given a text for users.
  const bool check = dynamic_cast<const std::logic_error*>(&error) != nullptr;
  if (!check || !IsAscii(error.what())) return error.what();
  const bool position = dynamic_cast<const std::out_of_range*>(&error) != nullptr;
  return position ? "没有这样的行、列或成员" : "参数不正确";
}

std::string TrappedText(std::string_view prefix, const std::exception& error) {
  std::string text = std::string(prefix) + ErrorText(error);
  if (Tracing()) Trace("failed", text);
  return text;
}

void TraceIgnored() noexcept {
  try {
    throw;
  } catch (const std::exception& error) {
    Trace("ignored", error.what());
  } catch (...) {
    Trace("ignored", "an exception of another kind");
  }
}

}  // namespace tavrix::host
