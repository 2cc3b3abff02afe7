#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "book/host/settings_file.h"

namespace desk::book {

/// The books that a user has opened last, in a settings file: those that are pinned come first and
/// stay, the others make room for newer ones. Several programs may use one file. What cannot be
/// read or written is as if it had never been there.
class RecentBooks {
 public:
  struct Entry {
    std::string place;
    bool pinned = false;
    friend bool operator==(const Entry&, const Entry&) = default;
  };

  /// At most so many are kept; one less can be pinned, so that there is room for the latest.
  static constexpr std::size_t kMax = 8;

  /// `file` is the settings file at `path`, which it lets go of after each change, so that others
  /// see it; it must outlive this.
  RecentBooks(SharedSettingsFile& file, std::string path);

  /// The pinned ones in the order in which they were pinned, then the others, the newest first.
  [[nodiscard]] const std::vector<Entry>& Entries() const { return entries_; }
  /// As the file has them now: others may have opened books meanwhile.
  void Reread();
  /// A book has been opened.
  void Remember(const std::string& place);
  void Forget(const std::string& place);
  /// False when as many are pinned as can be.
  bool SetPinned(const std::string& place, bool pinned);

 private:
  [[nodiscard]] std::vector<Entry>::iterator Find(const std::string& place);
  [[nodiscard]] std::vector<Entry>::iterator FirstUnpinned();
  void Write();

  SharedSettingsFile& file_;
  std::string path_;
  std::vector<Entry> entries_;
};

}  // namespace desk::book
