#pragma once

#include <memory>
#include <string>

#include "host/objects.h"

namespace desk::book {

namespace host = tavrix::host;

class SettingsDocument;

/// A settings file. All objects of this program on one file share its content; the file is replaced
/// as a whole when the last of them goes, and only when something has changed. A file that does not
/// exist reads as empty; so does one that cannot be read or is larger than 1 MiB, and that one is
/// never replaced.
class SharedSettingsFile : public host::SettingsFile {
 public:
  /// Lets go of the file before.
  void SetFileName(const std::string& path) override;
  [[nodiscard]] std::string ReadValue(const std::string& section, const std::string& key,
                                      const std::string& fallback) override;
  /// `host::HostError` when the file cannot be written.
  void WriteValue(const std::string& section, const std::string& key,
                  const std::string& value) override;

 private:
  std::shared_ptr<SettingsDocument> document_;
};

}  // namespace desk::book
