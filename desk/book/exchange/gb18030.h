#pragma once

#include <string>
#include <string_view>

namespace desk::book {

/// A text in GB18030, of which GBK and GB2312 are parts, as UTF-8. What is no character there
/// becomes U+FFFD, one for each bad byte.
[[nodiscard]] std::string FromGb18030(std::string_view bytes);

}  // namespace desk::book
