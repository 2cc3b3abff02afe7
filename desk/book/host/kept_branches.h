#pragma once

#include <string>
#include <utility>
#include <vector>

#include "book/host/settings_file.h"

namespace desk::book {

/// The branches that a user has left open in each of the latest books, in a settings file, so that
/// they are open when the book is opened again. What cannot be read or written is as if nothing had
/// been open.
class KeptBranches {
 public:
  /// The codes of the open accounts of each page, in the order of the page.
  using Pages = std::vector<std::vector<std::string>>;

  explicit KeptBranches(std::string file) : path_(std::move(file)) { file_.SetFileName(path_); }

  /// Empty for a book that is not known.
  [[nodiscard]] Pages Read(const std::string& book);
  /// In place of the book that has not been left for longest, when there are too many.
  void Write(const std::string& book, const Pages& pages);

  static constexpr int kMaxBooks = 9;
  /// Bytes kept of one book; the first branches are kept where there are more.
  static constexpr std::size_t kMaxText = 100'000;

 private:
  struct Place {
    std::string section;
    long newest = 0;     ///< the number of the book that was left last
    bool known = false;  ///< the section holds this book; else it is the one to give up
  };
  [[nodiscard]] Place PlaceOf(const std::string& book);

  std::string path_;
  SharedSettingsFile file_;
};

}  // namespace desk::book
