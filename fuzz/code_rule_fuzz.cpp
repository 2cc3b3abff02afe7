// Levels and parents of any code under any rule.

#include <string>

#include "book/ledger/code_rule.h"
#include "host/text.h"
#include "host/utf.h"
#include "input.h"

namespace tavrix::fuzz {
namespace {

void Run(Input input) {
  const std::string rule = input.Line();
  const std::string code = input.Line();
  const int level_asked = input.Number(255) - 128;
  desk::book::CodeRuleArithmetic rules;
  const auto length = host::TextLength(code);

  Require(rules.LengthAtLevel(level_asked, rule) >= 0);
  const auto whole = rules.LengthAtLevel(static_cast<std::int32_t>(rule.size()), rule);
  Require(rules.LengthAtLevel(0x7FFFFFFF, rule) == whole);
  const std::int32_t level = rules.LevelOf(code, rule);
  const std::string parent = rules.ParentCode(code, rule);
  Require(level >= 0 && level <= static_cast<std::int32_t>(rule.size()));
  if (level > 0) Require(rules.LengthAtLevel(level, rule) == static_cast<std::int32_t>(length));
  if (level <= 1) return Require(parent.empty());
  const auto expected = static_cast<std::size_t>(rules.LengthAtLevel(level - 1, rule));
  Require(host::TextLength(parent) <= length);
  Require(host::ToUtf16(code).substr(0, expected).size() == expected);
  Require(host::ToUtf8(host::ToUtf16(code).substr(0, expected)) == parent);
}

}  // namespace
}  // namespace tavrix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavrix::fuzz::Run({data, size});
  return 0;
}
