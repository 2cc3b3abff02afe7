#include "book/host/settings_text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/text.h"
#include "host/utf.h"

namespace desk::book {

namespace host = tavrix::host;

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kLowByteFirst = "\xFF\xFE";  // UTF-16
constexpr std::string_view kHighByteFirst = "\xFE\xFF";

constexpr std::array<std::pair<char, char>, 5> kEscapes = {
    {{'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {'"', '"'}, {'\\', '\\'}}};

std::string_view Stripped(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

/// Whether `text` is one piece in quotes. Text that only looks as if it were, such as a format that
/// begins with one piece and ends with another, is not.
bool IsQuoted(std::string_view text) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') return false;
  const std::string_view inside = text.substr(1, text.size() - 2);
  for (std::size_t i = 0; i < inside.size(); ++i) {
    if (inside[i] == '"') return false;
    if (inside[i] == '\\') ++i;
  }
  return true;
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

/// `text` so that `Decoded` gives it back.
std::string Encoded(std::string_view text) {
  const bool plain = Stripped(text) == text && text.find_first_of("\n\r\t") == text.npos;
  return plain && !IsQuoted(text) ? std::string(text) : Quoted(text);
}

/// As `Encoded`, so that `EndOfName` finds the end before one of `marks`.
std::string EncodedName(std::string_view text, std::string_view marks) {
  const bool plain = text.find_first_of(marks) == text.npos && !text.starts_with('"');
  return plain ? Encoded(text) : Quoted(text);
}

std::string Decoded(std::string_view text) {
  text = Stripped(text);
  if (!IsQuoted(text)) return std::string(text);
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

/// Where a name ends: at the first `mark` outside quotes.
std::size_t EndOfName(std::string_view text, char mark) {
  if (!text.starts_with('"')) return text.find(mark);
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '\\') {
      ++i;
    } else if (text[i] == '"') {
      return text.find(mark, i);
    }
  }
  return std::string_view::npos;
}

struct Line {
  enum class Kind { kOther, kSection, kKey };
  Kind kind = Kind::kOther;
  std::string_view name;  ///< of a section or key, as it is written
  std::string_view value;
};

Line Parse(std::string_view text) {
  const std::string_view content = Stripped(text);
  if (content.empty() || content.front() == ';' || content.front() == '#') return {};
  if (content.front() == '[') {
    const std::string_view rest = Stripped(content.substr(1));
    const std::size_t end = EndOfName(rest, ']');
    if (end == rest.npos) return {};
    return {Line::Kind::kSection, rest.substr(0, end), {}};
  }
  const std::size_t end = EndOfName(content, '=');
  if (end == content.npos) return {};
  return {Line::Kind::kKey, content.substr(0, end), content.substr(end + 1)};
}

std::string KeyLine(std::string_view key, std::string_view value) {
  return (key.empty() ? "\"\"" : EncodedName(key, "=[;#")) + "=" + Encoded(value);
}

/// What a person has noted behind a number, from its mark on. Behind other values nothing is a note
/// for sure: a format has parts with ";" between.
std::string_view NoteBehind(std::string_view value) {
  value = Stripped(value);
  const std::size_t end = value.find_first_not_of("+-.0123456789");
  if (end == 0 || end == value.npos || (value[end] != ' ' && value[end] != '\t')) return {};
  const std::string_view note = Stripped(value.substr(end));
  return note.starts_with(';') || note.starts_with('#') ? note : std::string_view();
}

/// UTF-16 with its byte order mark as UTF-8 with its own.
std::string Narrowed(std::string_view bytes) {
  const std::size_t low = bytes.starts_with(kLowByteFirst) ? 0 : 1;
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low_byte = static_cast<unsigned char>(bytes[i + low]);
    const auto high_byte = static_cast<unsigned char>(bytes[i + 1 - low]);
    text.push_back(static_cast<char16_t>(high_byte << 8 | low_byte));
  }
  return host::ToUtf8(text);
}

}  // namespace

SettingsText::SettingsText(std::string_view text) {
  std::string narrowed;
  if (text.starts_with(kLowByteFirst) || text.starts_with(kHighByteFirst)) {
    narrowed = Narrowed(text);
    text = narrowed;
  }
  byte_order_mark_ = text.starts_with(kByteOrderMark);
  if (byte_order_mark_) text.remove_prefix(kByteOrderMark.size());
  const std::size_t first_end = text.find('\n');
  if (first_end != text.npos && (first_end == 0 || text[first_end - 1] != '\r')) line_end_ = "\n";
  Section* section = nullptr;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    // Where line ends are plain a carriage return is a part of its line, and stays with it.
    if (line_end_.size() > 1 && line.ends_with('\r')) line.remove_suffix(1);
    section = AddLine(std::string(line), section);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

SettingsText::Section* SettingsText::AddLine(std::string text, Section* section) {
  const Line line = Parse(text);
  if (line.kind == Line::Kind::kSection) {
    std::string name = host::LowerCase(Decoded(line.name));
    return &AddSection(std::move(text), std::move(name));
  }
  if (line.kind == Line::Kind::kKey && section != nullptr) {
    section->keys.try_emplace(host::LowerCase(Decoded(line.name)),
                              Place{blocks_.size() - 1, blocks_.back().size()});
  }
  blocks_.back().push_back(std::move(text));
  return section;
}

SettingsText::Section& SettingsText::AddSection(std::string line, std::string name) {
  const auto [section, fresh] = sections_.try_emplace(std::move(name));
  if (fresh) section->second.home = blocks_.size();
  blocks_.emplace_back().push_back(std::move(line));
  return section->second;
}

const SettingsText::Place* SettingsText::Find(std::string_view section,
                                              std::string_view key) const {
  const auto named = sections_.find(host::LowerCase(section));
  if (named == sections_.end()) return nullptr;
  const auto found = named->second.keys.find(host::LowerCase(key));
  return found == named->second.keys.end() ? nullptr : &found->second;
}

std::optional<std::string> SettingsText::Read(std::string_view section,
                                              std::string_view key) const {
  const Place* place = Find(section, key);
  if (place == nullptr) return {};
  return Decoded(Parse(blocks_[place->block][place->line]).value);
}

bool SettingsText::Write(std::string_view section, std::string_view key, std::string_view value) {
  std::string name = host::LowerCase(section);
  auto named = sections_.find(name);
  if (named != sections_.end()) {
    const auto found = named->second.keys.find(host::LowerCase(key));
    if (found != named->second.keys.end()) {
      return Replace(named->second, found->second, KeyLine(key, value), value);
    }
  } else {
    std::vector<std::string>& last = blocks_.back();
    if (!last.empty() && !Stripped(last.back()).empty()) last.emplace_back();
    AddSection("[" + EncodedName(section, "]") + "]", name);
    named = sections_.find(name);
  }
  // Behind the section's last line that is not blank, so that the gap to the next section stays;
  // no key stands behind that.
  Section& home = named->second;
  std::vector<std::string>& lines = blocks_[home.home];
  std::size_t end = lines.size();
  while (Stripped(lines[end - 1]).empty()) --end;
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(end), KeyLine(key, value));
  home.keys[host::LowerCase(key)] = {home.home, end};
  return true;
}

bool SettingsText::Replace(Section& section, Place place, std::string line,
                           std::string_view value) {
  std::vector<std::string>& lines = blocks_[place.block];
  const std::string_view before = Parse(lines[place.line]).value;
  if (Decoded(before) == value) return false;
  std::string note(NoteBehind(before));
  lines[place.line] = std::move(line);
  if (note.empty()) return true;
  // On a line of its own: behind the new value it could be read as a part of it.
  for (auto& [name, other] : section.keys) {
    if (other.block == place.block && other.line >= place.line) ++other.line;
  }
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place.line), std::move(note));
  return true;
}

std::string SettingsText::Text() const {
  std::string text(byte_order_mark_ ? kByteOrderMark : std::string_view());
  for (const std::vector<std::string>& lines : blocks_) {
    for (const std::string& line : lines) text.append(line).append(line_end_);
  }
  return text;
}

}  // namespace desk::book
