#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace desk::book {

/// A text of sections and keys that people may edit too:
///
///     ; a comment
///     [VsColWidth]
///     VsCol0=1200
///
/// Names compare without case; blanks around names and values do not count. What would be lost that
/// way, and line breaks, are written in double quotes with \n, \r, \t, \" and \\. Any text can be
/// read: lines that are nothing known stay where they are and as they are. Of a key that stands
/// twice the first counts; sections of one name are one section. Byte order mark and kind of line
/// ends stay; UTF-16, as some editors save it, becomes UTF-8. Reading a value takes no time that
/// grows with the text.
class SettingsText {
 public:
  SettingsText() = default;
  explicit SettingsText(std::string_view text);

  [[nodiscard]] std::optional<std::string> Read(std::string_view section,
                                                std::string_view key) const;
  /// Gives whether the text has changed.
  bool Write(std::string_view section, std::string_view key, std::string_view value);
  [[nodiscard]] std::string Text() const;

 private:
  struct Place {
    std::size_t section;
    std::size_t line;
  };
  void AddLine(std::string line);
  void AddSection(std::string line, const std::string& name);
  [[nodiscard]] const Place* Find(std::string_view section, std::string_view key) const;

  /// Each section's lines begin with its header; before the first stands what belongs to none.
  std::vector<std::vector<std::string>> sections_{1};
  std::string current_;                                   // name of the last section
  std::unordered_map<std::string, std::size_t> by_name_;  // names in lower case
  std::unordered_map<std::string, Place> by_key_;
  std::string line_end_ = "\r\n";
  bool byte_order_mark_ = false;
};

}  // namespace desk::book
