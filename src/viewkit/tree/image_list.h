#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace tavrix::viewkit {

/// Pictures under their names (`ImageList`). The pictures themselves are the windows' business; a
/// model speaks of them by name. Names are compared with case.
class ImageList {
 public:
  void Add(std::string name) { names_.push_back(std::move(name)); }
  [[nodiscard]] bool Has(std::string_view name) const {
    return std::find(names_.begin(), names_.end(), name) != names_.end();
  }
  [[nodiscard]] const std::vector<std::string>& Names() const { return names_; }

 private:
  std::vector<std::string> names_;
};

}  // namespace tavrix::viewkit
