#pragma once

#include <cstdint>
#include <string>

#include "host/objects.h"

namespace desk::book {

namespace host = tavrix::host;

/// Code-rule arithmetic; lengths are UTF-16 units.
class CodeRuleArithmetic : public host::CodeRule {
 public:
  [[nodiscard]] std::string ParentCode(const std::string& code, const std::string& rule) override;
  [[nodiscard]] std::int32_t LevelOf(const std::string& code, const std::string& rule) override;
  [[nodiscard]] std::int32_t LengthAtLevel(std::int32_t level, const std::string& rule) override;
};

}  // namespace desk::book
