#pragma once

#include <map>
#include <string>

#include "host/objects.h"

namespace desk::book {

namespace host = tavrix::host;

/// A keyed collection of values; keys compare without case.
class ParameterList : public host::Parameters {
 public:
  void Set(const std::string& key, host::Value value);
  void Remove(const std::string& key);
  [[nodiscard]] bool Exists(const std::string& key) override;
  /// Throws `host::HostError` for a key that does not exist.
  [[nodiscard]] host::Value Item(const std::string& key) override;
  void Clear() override { values_.clear(); }

 private:
  std::map<std::string, host::Value> values_;  ///< by the key in lower case
};

}  // namespace desk::book
