#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/host/settings_file.h"
#include "support/recorder.h"
#include "support/test_book.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/layout/m_mode.h"

namespace tavrix::viewkit {

using Rows = std::vector<std::vector<std::string>>;

/// A grid and a layout file on a book's own settings-file objects.
class LayoutTest : public testing::Test {
 protected:
  void Write(const std::string& text) const {
    std::ofstream(desk::book::PathOf(path_), std::ios::binary) << text;
  }
  [[nodiscard]] std::string OnDisk() const {
    return desk::book::ReadFile(desk::book::PathOf(path_));
  }
  [[nodiscard]] bool Exists() const { return std::filesystem::exists(desk::book::PathOf(path_)); }
  [[nodiscard]] std::string Stored(const std::string& section, const std::string& key) const {
    desk::book::SharedSettingsFile file;
    file.SetFileName(path_);
    return file.ReadValue(section, key, "(none)");
  }
  void Store(const std::string& section, const std::string& key, const std::string& value) const {
    desk::book::SharedSettingsFile file;
    file.SetFileName(path_);
    file.WriteValue(section, key, value);
  }

  void Apply(FlexGrid& grid, bool width_only = false) const {
    ApplyVsLayout(path_, grid, width_only, *book_.System());
  }
  void Save(const FlexGrid& grid, bool width_only = false) const {
    SaveVsLayout(path_, grid, width_only, *book_.System());
  }

  test::TempFolder folder_;
  std::string path_ = folder_.File("布局.txt");
  desk::book::Book book_ = test::MakeBook();
};

/// A header row and these data rows.
inline void Fill(FlexGrid& grid, const Rows& rows) {
  host::RowSet set(rows.front().size());
  for (const auto& row : rows) {
    for (const std::string& text : row) set.AppendText(text);
  }
  grid.SetFixedRows(1);
  grid.SetCols(static_cast<int>(rows.front().size()));
  grid.LoadRows(std::move(set));
}

/// Each data row's texts with "|" between, as displayed.
[[nodiscard]] inline std::vector<std::string> Shown(const FlexGrid& grid) {
  std::vector<std::string> lines;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    std::string line;
    for (int col = 0; col < grid.Cols(); ++col) {
      line += (col == 0 ? "" : "|") + grid.DisplayText(row, col);
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

using Lines = std::vector<std::string>;

}  // namespace tavrix::viewkit
