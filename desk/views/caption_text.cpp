#include "views/caption_text.h"

namespace desk::views {

std::string EscapedCaption(std::string_view text) {
  std::string shown;
  for (const char c : text) shown.append(c == '&' ? 2 : 1, c);
  return shown;
}

}  // namespace desk::views
