#include "book/exchange/import_line.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "book/ledger/code_rule.h"
#include "book/ledger/folded_text.h"
#include "host/account.h"
#include "host/text.h"

namespace desk::book {

namespace {

using enum AccountField;

constexpr std::size_t kLongestCode = 40;
constexpr std::size_t kLongestText = 255;

/// Words that mean a category, folded; the words themselves come first.
struct CategoryWords {
  std::string_view category;
  std::array<std::string_view, 6> words;
};
constexpr std::array<CategoryWords, 6> kCategoryWords = {{
    {"资产", {"资产", "资产类", "asset", "assets", "流动资产", "非流动资产"}},
    {"负债", {"负债", "负债类", "liability", "liabilities", "流动负债", "非流动负债"}},
    {"共同", {"共同", "共同类", "common", "", "", ""}},
    {"权益", {"权益", "权益类", "所有者权益", "所有者权益类", "equity", "净资产"}},
    {"成本", {"成本", "成本类", "cost", "costs", "", ""}},
    {"损益", {"损益", "损益类", "profit and loss", "income", "expense", "revenue"}},
}};

constexpr std::array<std::string_view, 11> kYes = {"是", "有",   "√", "✓", "封存", "1",
                                                   "y",  "true", "t", "x", "yes"};
constexpr std::array<std::string_view, 9> kNo = {"否", "无", "0", "n", "no", "false", "f", "-", ""};
constexpr std::array<std::string_view, 6> kDebitWords = {"借", "借方", "debit", "d", "dr", "1"};
constexpr std::array<std::string_view, 6> kCreditWords = {"贷", "贷方", "credit", "c", "cr", "0"};

template <std::size_t kCount>
bool IsAmong(const std::array<std::string_view, kCount>& words, std::string_view word) {
  return std::ranges::find(words, word) != words.end();
}

std::string Title(AccountField field) {
  return "“" + std::string(InfoOf(field).title) + "”";
}

std::string WhyNoText(AccountField field, const std::string& text) {
  const std::size_t length = host::TextLength(text);
  if (length <= kLongestText) return {};
  return Title(field) + "太长（" + std::to_string(length) + " 个字，最多 " +
         std::to_string(kLongestText) + " 个）";
}

std::string TakeFlag(AccountField field, const std::string& cell, AccountRecord& account) {
  const std::string word = Folded(cell);
  const bool debit = field == kDebit;
  const bool set = debit ? IsAmong(kDebitWords, word) : IsAmong(kYes, word);
  if (!set && !(debit ? IsAmong(kCreditWords, word) : IsAmong(kNo, word))) {
    return Title(field) + "不能是“" + cell + "”，应当是" + (debit ? "“借”或“贷”" : "“是”或“否”");
  }
  account.SetFlag(field, set);
  return {};
}

/// Fields that an account cannot be without: an empty cell says nothing of them.
bool IsNeeded(AccountField field) {
  return field == kName || field == kCategory || field == kDebit || field == kBookType;
}

std::string TakeCell(AccountField field, const std::string& cell, AccountRecord& account) {
  if (IsFlag(field)) return TakeFlag(field, cell, account);
  if (field == kCategory) {
    const auto category = CategoryIn(cell);
    if (!category) return "没有“" + cell + "”这个科目类别";
    account.Text(field) = *category;
    return {};
  }
  if (field == kBookType && std::ranges::find(host::kBookTypes, cell) == host::kBookTypes.end()) {
    return "没有“" + cell + "”这种账页格式";
  }
  account.Text(field) = cell;
  return WhyNoText(field, cell);
}

}  // namespace

std::string RowCells::Text(AccountField field) const {
  const auto column = columns_.ColumnOf(field);
  if (!column || *column >= row_.cells.size()) return {};
  std::string_view text = row_.cells[*column];
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t start = std::min(text.find_first_not_of(kBlanks), text.size());
  text.remove_prefix(start);
  return std::string(text.substr(0, text.find_last_not_of(kBlanks) + 1));
}

std::string CodeIn(const std::string& cell, const std::string& rule) {
  std::string code = std::ranges::all_of(cell, [](char unit) { return unit > 0; })
                         ? cell
                         : Folded(cell);  // digits of full width
  CodeRuleArithmetic arithmetic;
  if (arithmetic.LevelOf(code, rule) > 0) return code;
  std::string plain = code;
  std::erase_if(plain, [](char unit) { return unit == '.' || unit == '-' || unit == ' '; });
  return rule.empty() || arithmetic.LevelOf(plain, rule) > 0 ? plain : code;
}

std::string WhyNoCode(const std::string& code, const std::string& rule) {
  if (code.empty()) return "没有科目编码";
  const auto is_control = [](char unit) { return static_cast<unsigned char>(unit) < ' '; };
  if (std::ranges::any_of(code, is_control)) return "编码中有换行等不能用的字符";
  const std::size_t length = host::TextLength(code);
  if (length > kLongestCode) return "编码太长";
  CodeRuleArithmetic arithmetic;
  if (arithmetic.LevelOf(code, rule) > 0) return {};
  std::string lengths;
  for (int level = 1; level <= static_cast<int>(rule.size()); ++level) {
    lengths += (level == 1 ? "" : "、") + std::to_string(arithmetic.LengthAtLevel(level, rule));
  }
  if (lengths.empty()) return "账簿没有编码规则";
  return "编码有 " + std::to_string(length) + " 位，按编码规则应当是 " + lengths + " 位";
}

std::string TakeCells(const RowCells& cells, AccountRecord& account) {
  for (const FieldInfo& info : Fields()) {
    if (info.field == kCode || !cells.Has(info.field)) continue;
    const std::string cell = cells.Text(info.field);
    if (cell.empty() && IsNeeded(info.field)) continue;
    if (std::string why = TakeCell(info.field, cell, account); !why.empty()) return why;
  }
  // A currency is accounting in foreign currency, whatever the file says of that.
  if (cells.Has(kCurrency) && !account.Text(kCurrency).empty()) account.SetFlag(kForeign, true);
  return {};
}

std::optional<std::string> CategoryIn(const std::string& word) {
  const std::string folded = Folded(word);
  for (const CategoryWords& each : kCategoryWords) {
    if (!folded.empty() && IsAmong(each.words, folded)) return std::string(each.category);
  }
  return std::nullopt;
}

}  // namespace desk::book
