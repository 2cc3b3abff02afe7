#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/controls.h"
#include "host/objects.h"

namespace tavrix::viewkit {

/// The settings-file object on `path`. Throws `HostError` when the host has none to give.
[[nodiscard]] std::shared_ptr<host::SettingsFile> OpenSettingsFile(host::SystemObject& pcSystem,
                                                                   const std::string& path);

/// The value of a key. One that cannot be read counts as absent.
[[nodiscard]] std::string ReadOr(host::SettingsFile& file, const std::string& section,
                                 const std::string& key, const std::string& fallback);

/// `text`'s leading number without its fraction. One beyond a million is damage rather than a
/// wish: `std::out_of_range`.
[[nodiscard]] int SaneNumber(std::string_view text);

/// The sections of one grid in a layout file: their names end in the grid's suffix. `Write` may
/// throw what the host throws; a key that cannot be read counts as absent.
class LayoutFile {
 public:
  LayoutFile(std::shared_ptr<host::SettingsFile> file, const host::Control& grid);

  [[nodiscard]] std::string Read(std::string_view section, const std::string& key,
                                 const std::string& fallback) const;
  /// The value as `SaneNumber` reads it.
  [[nodiscard]] int ReadNumber(std::string_view section, const std::string& key,
                               int fallback) const;
  /// Whether the leading number is exactly 1.
  [[nodiscard]] bool ReadFlag(std::string_view section, const std::string& key,
                              bool fallback) const;
  void Write(std::string_view section, const std::string& key, const std::string& value) const;

  [[nodiscard]] static std::string ColumnKey(int col) { return "VsCol" + std::to_string(col); }

 private:
  [[nodiscard]] std::string Section(std::string_view name) const;

  std::shared_ptr<host::SettingsFile> file_;
  std::string suffix_;
};

/// Names in a layout file. Those marked so are set by hand and never written, so that saving cannot
/// overwrite them.
namespace layout {
inline constexpr std::string_view kHidden = "VsIsHidden";
inline constexpr std::string_view kWidth = "VsColWidth";
inline constexpr std::string_view kSort = "VsIsSort";  // by hand
inline constexpr std::string_view kMerge = "VsIsColMerge";
inline constexpr std::string_view kDataType = "VsColDataType";
inline constexpr std::string_view kFormat = "VsColFormat";
inline constexpr std::string_view kDecimals = "VsColFormat_Xs";     // by hand
inline constexpr std::string_view kValueKind = "VsColValDataType";  // by hand
inline constexpr std::string_view kAlignment = "VsColAlignment";
inline constexpr std::string_view kGroup = "VsIsGroupOn";  // by hand
inline constexpr std::string_view kTotal = "VsIsTotalOn";  // by hand

inline constexpr std::string_view kGrid = "Vs";
inline constexpr const char* kClearTotals = "VsTotalSave";  // by hand
inline constexpr const char* kRowHeight = "VsRowHeight";
inline constexpr const char* kFixedRowHeight = "VsFixedRowHeight";
/// Deliberately holds the frozen columns, in spite of its name.
inline constexpr const char* kFrozenCols = "VsFixedCols";
}  // namespace layout

}  // namespace tavrix::viewkit
