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
/// way, and line breaks, are written in double quotes with \n, \r, \t, \" and \\; a value with
/// other quotes between its first and its last stands as it is. Any text can be read: lines that
/// are nothing known stay where they are and as they are. Of a key that stands twice the first
/// counts; sections of one name are one section. What stands behind a value is a part of it; when a
/// number is replaced that a note follows (" ; note"), the note gets a line of its own above. Byte
/// order mark and kind of line ends stay; UTF-16, as some editors save it, becomes UTF-8. Reading a
/// value takes no time that grows with the text.
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
    std::size_t block;
    std::size_t line;
  };
  /// All sections of one name.
  struct Section {
    std::size_t home;  ///< the first one's block, which new keys go to
    std::unordered_map<std::string, Place> keys;
  };
  /// Adds a line at the end, below the header of `section` (null before the first one), and gives
  /// the section that the next line belongs to.
  Section* AddLine(std::string text, Section* section);
  Section& AddSection(std::string line, std::string name);
  /// Puts `line`, which holds `value`, in place of the one there. Gives whether that is a change.
  bool Replace(Section& section, Place place, std::string line, std::string_view value);
  [[nodiscard]] const Place* Find(std::string_view section, std::string_view key) const;

  /// Each block begins with the header of a section; before the first stands what belongs to none.
  std::vector<std::vector<std::string>> blocks_{1};
  std::unordered_map<std::string, Section> sections_;  // names, as those of keys, in lower case
  std::string line_end_ = "\r\n";
  bool byte_order_mark_ = false;
};

}  // namespace desk::book
