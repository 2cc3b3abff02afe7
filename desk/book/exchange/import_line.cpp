#include "book/exchange/import_line.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <vector>

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
  std::string_view words;  ///< separated by "|"
};
constexpr std::array<CategoryWords, 6> kCategoryWords = {{
    {"资产",
     "资产|资产类|流动资产|非流动资产|长期资产|asset|assets|current asset|current assets|"
     "fixed asset|fixed assets|non-current asset|non-current assets"},
    {"负债",
     "负债|负债类|流动负债|非流动负债|长期负债|liability|liabilities|current liability|"
     "current liabilities|long-term liability|long-term liabilities"},
    {"共同", "共同|共同类|common"},
    {"权益", "权益|权益类|所有者权益|所有者权益类|股东权益|净资产|净资产类|equity"},
    {"成本", "成本|成本类|cost|costs"},
    {"损益",
     "损益|损益类|收入|收入类|营业收入|其他收入|其他收益|费用|费用类|期间费用|支出|营业成本及税金|"
     "其他损失|所得税|以前年度损益调整|profit and loss|income|expense|expenses|revenue"},
}};

constexpr std::array<std::string_view, 11> kYes = {"是", "有",   "√", "✓", "封存", "1",
                                                   "y",  "true", "t", "x", "yes"};
constexpr std::array<std::string_view, 9> kNo = {"否", "无", "0", "n", "no", "false", "f", "-", ""};
constexpr std::array<std::string_view, 6> kDebitWords = {"借", "借方", "debit", "d", "dr", "1"};
constexpr std::array<std::string_view, 6> kCreditWords = {"贷", "贷方", "credit", "c", "cr", "0"};

constexpr std::array<std::string_view, 6> kBlanks = {" ", "\t", "\r", "\n", "\u3000", "\u00A0"};

/// "合　计".
bool IsSum(const std::string& cell) {
  std::string word;
  std::ranges::copy_if(Folded(cell), std::back_inserter(word),
                       [](char unit) { return unit != ' ' && unit != ':'; });
  return IsListed("合计|总计|小计|本页合计|本页小计|total|sum|subtotal|grandtotal", word);
}

bool IsLetterOrDigit(char unit) {
  const char small = static_cast<char>(unit | 0x20);
  return host::IsDigit(unit) || (unit > 0 && small >= 'a' && small <= 'z');
}

/// "1001.0", as some programs write whole numbers.
bool IsWholeNumber(std::string_view text) {
  const std::size_t point = text.find('.');
  if (point == 0 || point == text.npos || point + 1 == text.size()) return false;
  return std::ranges::all_of(text.substr(0, point), host::IsDigit) &&
         text.find_first_not_of('0', point + 1) == text.npos;
}

/// "1.001E+11": digits have been lost.
bool IsScientific(std::string_view text) {
  const std::size_t power = text.find_first_of("eE");
  if (power == 0 || power == text.npos || power + 1 == text.size()) return false;
  const std::string_view digits = text.substr(0, power);
  const std::string_view rest = text.substr(power + 1);
  const bool sign = rest.front() == '+' || rest.front() == '-';
  const bool point = digits.find('.') != digits.npos;
  return (sign || point) && digits.find_first_not_of("0123456789.") == digits.npos &&
         rest.find_first_not_of("0123456789", sign ? 1 : 0) == rest.npos;
}

/// What stands between points, dashes, strokes and blanks.
std::vector<std::string_view> Parts(std::string_view code) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = code.find_first_of(".-/ ");
    parts.push_back(code.substr(0, end));
    if (end == code.npos) return parts;
    code.remove_prefix(end + 1);
  }
}

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

std::string TakeText(AccountField field, const std::string& text, AccountRecord& account) {
  account.Text(field) = text;
  return WhyNoText(field, text);
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
  if (field == kCurrency || field == kUnit) {
    // Other programs have columns of these names that say whether.
    const std::string word = Folded(cell);
    if (IsAmong(kNo, word)) return TakeText(field, {}, account);
    if (word == "是" || word == "yes" || word == "true") {
      return Title(field) + "应当是名称，不能是“" + cell + "”";
    }
  }
  return TakeText(field, cell, account);
}

}  // namespace

std::string RowCells::Text(AccountField field) const {
  const auto column = columns_.ColumnOf(field);
  if (!column || *column >= row_.cells.size()) return {};
  return std::string(WithoutBlanks(row_.cells[*column]));
}

std::string_view WithoutBlanks(std::string_view cell) {
  for (;;) {
    const auto blank = std::ranges::find_if(
        kBlanks, [&](std::string_view each) { return cell.starts_with(each); });
    if (blank == kBlanks.end()) break;
    cell.remove_prefix(blank->size());
  }
  for (;;) {
    const auto blank =
        std::ranges::find_if(kBlanks, [&](std::string_view each) { return cell.ends_with(each); });
    if (blank == kBlanks.end()) return cell;
    cell.remove_suffix(blank->size());
  }
}

bool IsAccountRow(const RowCells& cells) {
  if (!cells.Has(kCode)) return true;  // nobody knows what it is
  const std::string code = cells.Text(kCode);
  const std::string name = cells.Text(kName);
  if (IsSum(code) || (code.empty() && (name.empty() || IsSum(name)))) return false;
  return !name.empty() || std::ranges::any_of(code, IsLetterOrDigit);
}

std::string CodeIn(const std::string& cell, const std::string& rule) {
  const bool plain = std::ranges::all_of(cell, [](char unit) { return unit > 0; });
  std::string code = plain ? cell : Folded(cell);  // digits of full width
  if (IsWholeNumber(code)) return code.substr(0, code.find('.'));
  if (IsScientific(code)) return code;
  std::string joined;
  std::size_t level = 0;
  for (const std::string_view part : Parts(code)) {
    const bool fits = level < rule.size() && part.size() == std::size_t(rule[level] - '0');
    if (part.empty() || (!rule.empty() && !fits)) return code;
    joined += part;
    ++level;
  }
  return joined;
}

std::string WhyNoCode(const std::string& code, const std::string& rule) {
  if (code.empty()) return "没有科目编码";
  if (IsScientific(code)) return "编码是科学计数法的数字，请在表格中改成文本";
  if (!std::ranges::all_of(code, IsLetterOrDigit)) return "编码中有字母和数字以外的字符";
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
  const AccountRecord before = account;
  for (const FieldInfo& info : Fields()) {
    if (info.field == kCode || !cells.Has(info.field)) continue;
    const std::string cell = cells.Text(info.field);
    if (cell.empty() && IsNeeded(info.field)) continue;
    // What a book has already comes back as it is, whatever it is.
    if (!cell.empty() && cell == WithoutBlanks(account.Shown(info.field))) continue;
    if (std::string why = TakeCell(info.field, cell, account); !why.empty()) return why;
  }
  // Where the file does not say whether, a new currency says so.
  const std::string& currency = account.Text(kCurrency);
  const bool new_currency = !currency.empty() && currency != before.Text(kCurrency);
  if (new_currency && !cells.Has(kForeign)) account.SetFlag(kForeign, true);
  return {};
}

std::optional<std::string> CategoryIn(const std::string& word) {
  const std::string folded = Folded(word);
  for (const CategoryWords& each : kCategoryWords) {
    if (!folded.empty() && IsListed(each.words, folded)) return std::string(each.category);
  }
  return std::nullopt;
}

}  // namespace desk::book
