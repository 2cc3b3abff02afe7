#include "book/exchange/xlsx_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "book/exchange/xml_parser.h"
#include "book/exchange/zip_archive.h"
#include "host/number_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

namespace host = tavrix::host;

constexpr std::size_t kLongestCell = std::size_t{1}
                                     << 17;  // bytes; programs allow 32,767 characters

[[noreturn]] void Lacking(const char* what) {
  throw SourceError(std::string("这不是工作簿：其中没有") + what);
}

/// Reads one part of the archive; false when it is not there.
bool ReadPart(ZipReader& archive, const std::string& name, XmlSink& sink) {
  XmlParser parser(sink);
  const bool there = archive.Read(name, [&](std::string_view piece) { parser.Feed(piece); });
  if (there) parser.Finish();
  return there;
}

/// Elements that say all in their attributes.
class ElementSink final : public XmlSink {
 public:
  using Take = std::function<void(std::string_view name, const XmlAttributes& attributes)>;
  explicit ElementSink(Take take) : take_(std::move(take)) {}
  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    take_(name, attributes);
  }
  void OnEnd(std::string_view /*name*/) override {}
  void OnText(std::string_view /*text*/) override {}

 private:
  Take take_;
};

struct Relation {
  std::string type;
  std::string target;  ///< from the archive's root
};

/// The relations of the part `folder` + `part`, by their identifiers.
std::map<std::string, Relation> ReadRelations(ZipReader& archive, const std::string& folder,
                                              const std::string& part) {
  std::map<std::string, Relation> relations;
  ElementSink sink([&](std::string_view name, const XmlAttributes& attributes) {
    if (name != "Relationship") return;
    const std::string target(attributes.Get("Target"));
    const bool absolute = target.starts_with('/');
    relations[std::string(attributes.Get("Id"))] = {
        .type = std::string(attributes.Get("Type")),
        .target = absolute ? target.substr(1) : folder + target};
  });
  static_cast<void>(ReadPart(archive, folder + "_rels/" + part + ".rels", sink));
  return relations;
}

std::string TargetOfType(const std::map<std::string, Relation>& relations, std::string_view type) {
  for (const auto& [id, relation] : relations) {
    if (relation.type.ends_with(type)) return relation.target;
  }
  return {};
}

/// What the workbook's own part says.
struct Contents {
  std::vector<std::string> names;  ///< of the sheets
  std::vector<std::string> parts;  ///< where they are
  std::string shared;              ///< where the texts are that cells refer to; empty for none
  std::string styles;              ///< where the formats are; empty for none
};

Contents ReadContents(ZipReader& archive) {
  std::string workbook = TargetOfType(ReadRelations(archive, "", ""), "/officeDocument");
  if (workbook.empty()) workbook = "xl/workbook.xml";
  const std::size_t folder_end = workbook.rfind('/') + 1;
  const auto relations =
      ReadRelations(archive, workbook.substr(0, folder_end), workbook.substr(folder_end));
  Contents contents;
  contents.shared = TargetOfType(relations, "/sharedStrings");
  contents.styles = TargetOfType(relations, "/styles");
  ElementSink sink([&](std::string_view name, const XmlAttributes& attributes) {
    if (name != "sheet") return;
    const auto relation = relations.find(std::string(attributes.Get("id")));
    if (relation == relations.end() || !relation->second.type.ends_with("/worksheet")) return;
    contents.names.emplace_back(attributes.Get("name"));
    contents.parts.push_back(relation->second.target);
  });
  if (!ReadPart(archive, workbook, sink)) Lacking("工作簿的目录");
  if (contents.parts.empty()) Lacking("工作表");
  return contents;
}

void AppendBounded(std::string& cell, std::string_view text) {
  if (text.size() > kLongestCell - std::min(cell.size(), kLongestCell)) {
    throw SourceError("工作簿中有单元格的文字太长");
  }
  cell += text;
}

/// The texts that cells refer to by their numbers.
class SharedTextSink final : public XmlSink {
 public:
  void OnStart(std::string_view name, const XmlAttributes& /*attributes*/) override {
    if (name == "si") Start();
    if (name == "rPh") ++phonetic_;  // how the text is read aloud
    in_text_ = name == "t" && phonetic_ == 0;
  }
  void OnEnd(std::string_view name) override {
    if (name == "rPh") --phonetic_;
    if (name == "si" && !texts_.empty()) texts_.back() = UnescapedCell(texts_.back());
    in_text_ = false;
  }
  void OnText(std::string_view text) override {
    if (in_text_ && !texts_.empty()) AppendBounded(texts_.back(), text);
  }
  [[nodiscard]] std::vector<std::string> Take() { return std::move(texts_); }

 private:
  void Start() {
    constexpr std::size_t kMax = 2'000'000;
    if (texts_.size() >= kMax) throw SourceError("工作簿中的文字太多");
    texts_.emplace_back();
  }

  std::vector<std::string> texts_;
  int phonetic_ = 0;
  bool in_text_ = false;
};

/// For each format of cells how many digits a whole number has at least: "0000" has four. Such
/// formats show codes with zeros before them.
class DigitsSink final : public XmlSink {
 public:
  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    if (name == "cellXfs") in_cells_ = true;
    if (name == "numFmt") {
      const std::string_view code = attributes.Get("formatCode");
      const bool zeros = code.find_first_not_of('0') == code.npos && code.size() <= kLongest;
      if (zeros) digits_by_format_[std::string(attributes.Get("numFmtId"))] = code.size();
    }
    constexpr std::size_t kMax = 1U << 16;
    if (name != "xf" || !in_cells_ || digits_.size() == kMax) return;
    const auto found = digits_by_format_.find(std::string(attributes.Get("numFmtId")));
    digits_.push_back(found == digits_by_format_.end() ? 0 : found->second);
  }
  void OnEnd(std::string_view name) override {
    if (name == "cellXfs") in_cells_ = false;
  }
  void OnText(std::string_view /*text*/) override {}
  [[nodiscard]] std::vector<std::size_t> Take() { return std::move(digits_); }

 private:
  static constexpr std::size_t kLongest = 40;
  std::map<std::string, std::size_t> digits_by_format_;
  std::vector<std::size_t> digits_;
  bool in_cells_ = false;
};

/// "B12": its column, from 0.
std::optional<std::size_t> ColumnOf(std::string_view reference) {
  std::size_t column = 0;
  std::size_t letters = 0;
  for (const char unit : reference) {
    const char letter = static_cast<char>(unit & ~0x20);
    if (letter < 'A' || letter > 'Z' || letters == 3) break;
    constexpr std::size_t kLetters = 26;
    column = column * kLetters + static_cast<std::size_t>(letter - 'A' + 1);
    ++letters;
  }
  if (letters == 0) return std::nullopt;
  return column - 1;
}

/// "1.00101010101010E+15".
std::string LongNumber(double number) {
  std::array<char, 32> text;
  const int length = std::snprintf(text.data(), text.size(), "%.14E", number);
  return {text.data(), static_cast<std::size_t>(length)};
}

/// A number as a person would have typed it: programs show fifteen digits of it. A whole one has
/// `digits` at least.
std::string NumberIn(const std::string& text, std::size_t digits) {
  const auto read = host::NumberAtStart(text);
  if (!read) return text;
  // Of longer ones the last digits are lost: the reader is to see that.
  constexpr double kExact = 1e15;
  if (*read >= kExact) return LongNumber(*read);
  constexpr int kDigits = 15;
  const std::string number = host::PlainNumberText(host::RoundedToDigits(*read, kDigits));
  const bool whole = std::ranges::all_of(number, host::IsDigit);
  return std::string(whole ? digits - std::min(digits, number.size()) : 0, '0') + number;
}

class SheetSink final : public XmlSink {
 public:
  SheetSink(const std::vector<std::string>& shared, const std::vector<std::size_t>& digits)
      : shared_(shared), digits_(digits) {}

  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    if (name == "row") return StartRow(attributes);
    if (name == "c") return StartCell(attributes);
    if (name == "rPh") ++phonetic_;
    in_value_ = (name == "v" || name == "t") && phonetic_ == 0 && in_cell_;
  }
  void OnEnd(std::string_view name) override {
    in_value_ = false;
    if (name == "rPh") --phonetic_;
    if (name == "c" && in_cell_) EndCell();
    if (name == "row") AddRow(table_, std::exchange(row_, {.number = row_.number}));
  }
  void OnText(std::string_view text) override {
    if (in_value_) AppendBounded(value_, text);
  }
  [[nodiscard]] SourceTable Take() { return std::move(table_); }

 private:
  void StartRow(const XmlAttributes& attributes) {
    const std::string_view number = attributes.Get("r");
    int given = 0;
    std::from_chars(number.data(), number.data() + number.size(), given);
    row_ = {.number = given > 0 ? given : row_.number + 1};
    next_column_ = 0;
  }
  void StartCell(const XmlAttributes& attributes) {
    column_ = ColumnOf(attributes.Get("r")).value_or(next_column_);
    next_column_ = column_ + 1;
    type_ = attributes.Get("t");
    style_ = static_cast<std::size_t>(std::max(host::LeadingLong(attributes.Get("s")), 0));
    value_.clear();
    in_cell_ = true;
  }
  void EndCell() {
    in_cell_ = false;
    const std::string text = ValueText();
    if (host::Trimmed(text).empty()) return;
    if (column_ >= kMaxSourceColumns) {
      throw SourceError("第 " + std::to_string(row_.number) + " 行的列太多，这不像一张科目表");
    }
    if (row_.cells.size() <= column_) row_.cells.resize(column_ + 1);
    row_.cells[column_] = text;
  }
  [[nodiscard]] std::string ValueText() const {
    if (type_ == "s") {
      const auto place = static_cast<std::size_t>(std::max(host::LeadingLong(value_), 0));
      return place < shared_.size() && !value_.empty() ? shared_[place] : std::string();
    }
    if (type_ == "inlineStr" || type_ == "str") return UnescapedCell(value_);
    if (type_ == "b") return value_ == "1" ? "TRUE" : "FALSE";
    if (type_ == "e" || type_ == "d") return value_;
    return NumberIn(value_, style_ < digits_.size() ? digits_[style_] : 0);
  }

  const std::vector<std::string>& shared_;
  const std::vector<std::size_t>& digits_;
  SourceTable table_;
  SourceRow row_;
  std::size_t column_ = 0;
  std::size_t next_column_ = 0;
  std::string type_;
  std::size_t style_ = 0;
  std::string value_;
  bool in_cell_ = false;
  bool in_value_ = false;
  int phonetic_ = 0;
};

}  // namespace

bool IsWorkbook(std::string_view bytes) {
  return bytes.starts_with("PK\x03\x04");
}

bool IsOldWorkbook(std::string_view bytes) {
  return bytes.starts_with("\xD0\xCF\x11\xE0");
}

struct Workbook::State {
  explicit State(std::string content) : bytes(std::move(content)), archive(bytes) {}

  std::string bytes;
  ZipReader archive;
  Contents contents;
  std::optional<std::vector<std::string>> shared;  ///< read with the first sheet
  std::vector<std::size_t> digits;                 ///< as above
};

Workbook::Workbook(std::string bytes) : state_(std::make_unique<State>(std::move(bytes))) {
  state_->contents = ReadContents(state_->archive);
}

Workbook::~Workbook() = default;

const std::vector<std::string>& Workbook::Sheets() const {
  return state_->contents.names;
}

void Workbook::Renew() {
  state_->archive.Renew();
}

SourceTable Workbook::Read(std::size_t sheet) {
  const Contents& contents = state_->contents;
  if (!state_->shared) {
    SharedTextSink shared;
    if (!contents.shared.empty()) {
      static_cast<void>(ReadPart(state_->archive, contents.shared, shared));
    }
    state_->shared = shared.Take();
    DigitsSink digits;
    if (!contents.styles.empty()) {
      static_cast<void>(ReadPart(state_->archive, contents.styles, digits));
    }
    state_->digits = digits.Take();
  }
  SheetSink sink(*state_->shared, state_->digits);
  if (sheet >= contents.parts.size() || !ReadPart(state_->archive, contents.parts[sheet], sink)) {
    Lacking("这张工作表");
  }
  return sink.Take();
}

}  // namespace desk::book
