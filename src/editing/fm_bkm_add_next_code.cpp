#include <algorithm>
#include <string>
#include <string_view>

#include "editing/fm_bkm_add.h"
#include "editing/fm_bkm_add_impl.h"
#include "host/calls.h"
#include "host/text.h"

namespace tavrix::editing {

namespace {

/// The whole number at the start of `text`, plus one, without leading zeros; any number of digits.
std::string PlusOne(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(" 0"), text.size());
  const std::size_t end = std::min(text.find_first_not_of("0123456789", first), text.size());
  std::string digits(text.substr(first, end - first));
  auto digit = digits.rbegin();
  for (; digit != digits.rend() && *digit == '9'; ++digit) *digit = '0';
  if (digit != digits.rend()) {
    ++*digit;
  } else {
    digits.insert(digits.begin(), '1');
  }
  return digits;
}

std::string FirstSegment(std::int32_t width) {
  return width > 1 ? std::string(static_cast<std::size_t>(width - 1), '0') + "1" : "1";
}

/// The highest code of `category` with this length and prefix; null when there is none.
host::Value HighestCode(host::SystemObject& system, std::int32_t length,
                        const std::string& category, const std::string& prefix) {
  const bool jet = host::DialectOf(system) == host::Dialect::kJet;
  std::string sql =
      jet ? "Select TOP 1 ccode From gl_code" : "Select Max(ccode) as ccode From gl_code";
  sql += " Where len(ccode)=" + std::to_string(length);
  sql += jet ? " And  cclass='" : " And cclass='";  // the two blanks are meant
  sql += category + "'";
  if (!prefix.empty()) sql += " and ccode Like '" + prefix + "%'";  // Jet, too, gets "%" here
  if (jet) sql += " ORDER BY ccode desc";
  return host::ReadRows(system, sql, [](host::Recordset& highest) {
    return highest.EndOfFile() ? host::Value() : host::ReadField(highest, "ccode");
  });
}

}  // namespace

std::optional<std::string> FmBkmAdd::NextBm(const std::string& reference,
                                            const std::string& category, bool below) noexcept {
  using Code = std::optional<std::string>;
  return Trapped("-->NextBm::", host::kCommandError, [&]() -> Code {
    const auto session = Current();
    host::CodeRule& rule = *session->code_rule;
    const auto levels = static_cast<std::int32_t>(host::TextLength(session->rule));

    const std::string prefix = below ? reference : rule.ParentCode(reference, session->rule);
    const std::int32_t prefix_level = rule.LevelOf(prefix, session->rule);
    if (below && prefix_level >= levels) {
      Refuse(" 本软件仅支持 " + std::to_string(levels) + " 级编码!");  // leading blank meant
      return {};
    }
    // Without a reference there is nothing to stand beside: the first level's codes.
    const bool by_level = below || reference.empty();
    const std::int32_t length = by_level ? rule.LengthAtLevel(prefix_level + 1, session->rule)
                                         : static_cast<std::int32_t>(host::TextLength(reference));

    const host::Value highest = HighestCode(*session->pcSystem, length, category, prefix);
    if (highest.IsNull()) {
      return prefix + FirstSegment(length - rule.LengthAtLevel(prefix_level, session->rule));
    }
    // The whole code counts as one number: it may run into the next parent's codes, and a leading
    // zero is lost. Both are meant; only a code that gains a digit is refused.
    std::string next = PlusOne(highest.ToText());
    if (next.size() <= static_cast<std::size_t>(length)) return next;
    Refuse(" 已经没有空间容纳新的编码!");  // leading blank meant
    return {};
  });
}

}  // namespace tavrix::editing
