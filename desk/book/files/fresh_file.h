#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>

#include "host/non_copyable.h"

namespace desk::book {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

/// A new file beside `path`, under a name that no other process uses, which takes its place when it
/// is whole. Until then it goes with this object; those of processes that were killed go when the
/// next one for `path` is made. It has the owner and the mode of the file at `path`, if there is
/// one.
class FreshFile : private tavrix::host::NonCopyable {
 public:
  /// `host::HostError` when it cannot be made.
  explicit FreshFile(const std::filesystem::path& path);
  ~FreshFile();

  [[nodiscard]] const std::filesystem::path& Name() const { return name_; }
  /// To write its content; null once it has been placed.
  [[nodiscard]] std::FILE* Content() const { return file_.get(); }
  /// Takes the place of the file at `path`, in one step. `host::HostError`: that one stays.
  void Replace();
  /// Takes the name `path`, where nothing is. Gives false when something is there.
  [[nodiscard]] bool Place();

 private:
  std::filesystem::path path_;
  std::filesystem::path name_;
  OpenFile file_;  ///< held, so that nobody takes it for one that was left
};

}  // namespace desk::book
