#include "book/settings_text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/text.h"

namespace desk::book {

namespace host = tavrix::host;

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr std::array<std::pair<char, char>, 5> kEscapes = {
    {{'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {'"', '"'}, {'\\', '\\'}}};

std::string_view Stripped(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto escape = std::ranges::find(kEscapes, c, &std::pair<char, char>::first);
    if (escape == kEscapes.end()) {
      quoted += c;
    } else {
      quoted += {'\\', escape->second};
    }
  }
  return quoted + '"';
}

/// `text` so that `Decoded` gives it back: in quotes when it is not plain or holds one of `marks`.
std::string Encoded(std::string_view text, std::string_view marks) {
  const bool plain = Stripped(text) == text && text.find_first_of("\n\r\t") == text.npos &&
                     text.find_first_of(marks) == text.npos && !text.starts_with('"');
  return plain ? std::string(text) : Quoted(text);
}

/// Text that only looks as if it were quoted is taken as it is.
std::string Decoded(std::string_view text) {
  text = Stripped(text);
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') return std::string(text);
  std::string decoded;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    const auto escape =
        text[i] == '\\' && i + 2 < text.size()
            ? std::ranges::find(kEscapes, text[i + 1], &std::pair<char, char>::second)
            : kEscapes.end();
    decoded += escape == kEscapes.end() ? text[i] : escape->first;
    if (escape != kEscapes.end()) ++i;
  }
  return decoded;
}

/// Where a line's key ends: at the first "=" outside a quoted name.
std::size_t EndOfKey(std::string_view line) {
  if (!line.starts_with('"')) return line.find('=');
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == '\\') {
      ++i;
    } else if (line[i] == '"') {
      return line.find('=', i);
    }
  }
  return std::string_view::npos;
}

}  // namespace

SettingsText::Line SettingsText::ParseLine(std::string_view text) {
  Line line;
  line.text = text;
  const std::string_view content = Stripped(text);
  if (content.empty() || content.front() == ';' || content.front() == '#') return line;
  if (content.front() == '[') {
    const std::size_t end = content.rfind(']');
    if (end == content.npos) return line;
    line.kind = Line::Kind::kSection;
    line.name = host::LowerCase(Decoded(content.substr(1, end - 1)));
    return line;
  }
  const std::size_t end = EndOfKey(content);
  if (end == content.npos) return line;
  line.kind = Line::Kind::kKey;
  line.name = host::LowerCase(Decoded(content.substr(0, end)));
  line.value = Decoded(content.substr(end + 1));
  return line;
}

SettingsText::Line SettingsText::KeyLine(std::string_view key, std::string_view value) {
  return ParseLine((key.empty() ? "\"\"" : Encoded(key, "=[;#")) + "=" + Encoded(value, ""));
}

SettingsText::Line SettingsText::SectionLine(std::string_view section) {
  return ParseLine("[" + Encoded(section, "") + "]");
}

SettingsText::SettingsText(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const std::size_t first_end = text.find('\n');
  if (first_end != text.npos && (first_end == 0 || text[first_end - 1] != '\r')) line_end_ = "\n";
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines_.push_back(ParseLine(line));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::optional<SettingsText::Range> SettingsText::FindSection(std::string_view section) const {
  const std::string name = host::LowerCase(section);
  const auto is_section = [](const Line& line) { return line.kind == Line::Kind::kSection; };
  const auto found = std::ranges::find_if(
      lines_, [&](const Line& line) { return is_section(line) && line.name == name; });
  if (found == lines_.end()) return {};
  const auto end = std::find_if(found + 1, lines_.end(), is_section);
  return Range{static_cast<std::size_t>(found + 1 - lines_.begin()),
               static_cast<std::size_t>(end - lines_.begin())};
}

std::optional<std::size_t> SettingsText::FindKey(Range range, std::string_view key) const {
  const std::string name = host::LowerCase(key);
  for (std::size_t i = range.begin; i < range.end; ++i) {
    if (lines_[i].kind == Line::Kind::kKey && lines_[i].name == name) return i;
  }
  return {};
}

std::optional<std::string> SettingsText::Read(std::string_view section,
                                              std::string_view key) const {
  const auto range = FindSection(section);
  if (!range) return {};
  const auto line = FindKey(*range, key);
  if (!line) return {};
  return lines_[*line].value;
}

/// Behind the section's last line that is not blank, so that the gap to the next section stays.
void SettingsText::Insert(Range range, Line line) {
  while (range.end > range.begin && Stripped(lines_[range.end - 1].text).empty()) --range.end;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(range.end), std::move(line));
}

bool SettingsText::Write(std::string_view section, std::string_view key, std::string_view value) {
  auto range = FindSection(section);
  if (!range) {
    if (!lines_.empty() && !Stripped(lines_.back().text).empty()) lines_.emplace_back();
    lines_.push_back(SectionLine(section));
    range = Range{lines_.size(), lines_.size()};
  }
  const auto line = FindKey(*range, key);
  if (!line) {
    Insert(*range, KeyLine(key, value));
    return true;
  }
  if (lines_[*line].value == value) return false;
  lines_[*line] = KeyLine(key, value);
  return true;
}

std::string SettingsText::Text() const {
  std::string text;
  for (const Line& line : lines_) text.append(line.text).append(line_end_);
  return text;
}

}  // namespace desk::book
