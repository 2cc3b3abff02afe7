#pragma once

#include <filesystem>
#include <string>

#include "host/non_copyable.h"

namespace tavrix::test {

/// A folder of its own under the system's temporary one, gone at the end.
class TempFolder : private host::NonCopyable {
 public:
  TempFolder();
  ~TempFolder();
  /// UTF-8, without a trailing separator.
  [[nodiscard]] std::string Path() const;
  [[nodiscard]] std::string File(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

}  // namespace tavrix::test
