#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "host/non_copyable.h"

/// Archives of compressed files (ZIP), which workbooks are.
namespace desk::book {

/// An archive in memory.
class ZipReader : private tavrix::host::NonCopyable {
 public:
  /// `bytes` must outlive it. `SourceError` when they are no whole archive.
  explicit ZipReader(std::string_view bytes);
  ~ZipReader();

  /// Passes the content of a file piece by piece; false when there is no such file. All that is
  /// read of one archive is bounded, however much it claims to hold: `SourceError` beyond that, and
  /// when the file is damaged.
  bool Read(const std::string& name, const std::function<void(std::string_view)>& take);
  /// The bound counts from here on anew: somebody has asked for more.
  void Renew();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Makes an archive in memory.
class ZipWriter : private tavrix::host::NonCopyable {
 public:
  ZipWriter();
  ~ZipWriter();

  /// `name` in ASCII. `host::HostError` when there is no memory.
  void Add(const std::string& name, std::string_view content);
  /// The whole archive; nothing can be added after.
  [[nodiscard]] std::string Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace desk::book
