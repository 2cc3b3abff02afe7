#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace tavrix::fuzz {

/// Takes an input apart from its front; an input that has ended gives zeros and empty texts.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(std::string(data, data + size)), left_(rest_) {}

  [[nodiscard]] bool Ended() const { return left_.empty(); }
  /// 0 to `most`.
  [[nodiscard]] int Number(int most) {
    if (left_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(left_.front());
    left_.remove_prefix(1);
    return byte % (most + 1);
  }
  /// Up to the next line feed.
  [[nodiscard]] std::string Line() {
    const std::size_t end = std::min(left_.find('\n'), left_.size());
    std::string line(left_.substr(0, end));
    left_.remove_prefix(std::min(end + 1, left_.size()));
    return line;
  }
  [[nodiscard]] std::string_view Rest() const { return left_; }

 private:
  std::string rest_;
  std::string_view left_;
};

/// Ends the program, in every kind of build, when what must hold does not.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace tavrix::fuzz
