#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace desk::book {

/// A file to which lines are added about what the program does, for whoever looks into a fault
/// later. Several programs may add to one file. It never grows without end: a file that is full
/// becomes NAME.1, the one before it NAME.2. What cannot be written is left out, without a word.
class LogFile {
 public:
  static constexpr std::uintmax_t kMaxBytes = 1'000'000;

  struct Plan {
    std::filesystem::path path;
    std::string writer = {};                ///< tells the programs apart
    std::function<std::string()> now = {};  ///< what each line begins with
    std::uintmax_t most_bytes = kMaxBytes;
  };
  explicit LogFile(Plan plan) : plan_(std::move(plan)) {}

  [[nodiscard]] const std::filesystem::path& Path() const { return plan_.path; }
  /// One line: `word` says what it is about. Line ends in the text become blanks.
  void Write(std::string_view word, std::string_view text) const noexcept;

 private:
  void MakeRoom() const;
  [[nodiscard]] std::filesystem::path Old(int number) const;

  Plan plan_;
};

}  // namespace desk::book
