#pragma once

#include <optional>
#include <string>
#include <string_view>
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
/// read: lines that are nothing known stay where they are and as they are.
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
  struct Line {
    enum class Kind { kOther, kSection, kKey };
    Kind kind = Kind::kOther;
    std::string name;  ///< of a section or key, in lower case
    std::string value;
    std::string text;  ///< the line as it stands in the file
  };
  static Line ParseLine(std::string_view text);
  static Line KeyLine(std::string_view key, std::string_view value);
  static Line SectionLine(std::string_view section);
  struct Range {
    std::size_t begin;
    std::size_t end;
  };
  /// The lines of the first section of that name, without its header.
  [[nodiscard]] std::optional<Range> FindSection(std::string_view section) const;
  [[nodiscard]] std::optional<std::size_t> FindKey(Range range, std::string_view key) const;
  void Insert(Range range, Line line);

  std::vector<Line> lines_;
  std::string line_end_ = "\r\n";
};

}  // namespace desk::book
