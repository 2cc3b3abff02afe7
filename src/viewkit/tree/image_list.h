#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace tavrix::viewkit {

/// The names of pictures (`ImageList`), compared with case. Hosts name pictures of a tree's nodes
/// and of what is dragged; the models keep these names, and the windows draw no pictures.
class ImageList {
 public:
  void Add(std::string name) { names_.push_back(std::move(name)); }
  [[nodiscard]] bool Has(std::string_view name) const {
    return std::find(names_.begin(), names_.end(), name) != names_.end();
  }

 private:
  std::vector<std::string> names_;
};

}  // namespace tavrix::viewkit
