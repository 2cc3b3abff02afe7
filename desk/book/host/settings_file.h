#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/objects.h"

namespace desk::book {

namespace host = tavrix::host;

class SettingsDocument;

/// Who is told, with a text for users, that settings could not be saved: once for each file while
/// it is in use. Callers do not learn all of it: a file is written when nobody waits for an answer
/// any more, and what keeps the layout of a view takes failures for a layout that is not kept.
/// `tell` must not throw; empty: nobody.
void OnUnsavedSettings(std::function<void(const std::string&)> tell);

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
  /// `host::HostError` when the file cannot be written, or would become too large.
  void WriteValue(const std::string& section, const std::string& key,
                  const std::string& value) override;

 private:
  std::shared_ptr<SettingsDocument> document_;
};

}  // namespace desk::book
