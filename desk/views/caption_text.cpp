#include "views/caption_text.h"

namespace desk::views {

std::string EscapedCaption(std::string_view text) {
  std::string shown;
  for (const char c : text) shown.append(c == '&' ? 2 : 1, c);
  return shown;
}

std::string Shortened(std::string_view text) {
  constexpr int kMaxCharacters = 30;
  int characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool begins = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
    if (begins && ++characters > kMaxCharacters) return std::string(text.substr(0, i)) + "…";
  }
  return std::string(text);
}

}  // namespace desk::views
