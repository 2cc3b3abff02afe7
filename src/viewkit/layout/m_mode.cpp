#include "viewkit/layout/m_mode.h"

#include <string_view>

#include "host/calls.h"
#include "host/grid_update.h"
#include "host/report.h"
#include "viewkit/layout/file_system.h"
#include "viewkit/layout/layout_file.h"
#include "viewkit/layout/layout_reader.h"

namespace tavrix::viewkit {

using host::IgnoreErrors;

std::string GetSelfFilePath(const std::string& psName, host::SystemObject& pcSystem) {
  const std::string user = host::Required(pcSystem.Folders(), "Folders")->UserFolder();
  if (user.empty()) host::ThrowMissing("UserFolder");
  const std::string folder = user + kPathSeparator + "selfbb";
  MakeFolder(folder);  // one level only
  return folder + kPathSeparator + psName + ".txt";
}

int GetCtrlIndex(const host::Control& ctrl) {
  return ctrl.Index().value_or(kNoArray);
}

void ApplyVsLayout(const std::string& psFile, FlexGrid& grid, bool pbWidthOnly,
                   host::SystemObject& pcSystem) {
  IgnoreErrors([&] {
    // Its end raises the grid's events, and a listener may end the grid: nothing comes after it.
    const host::GridUpdate update(grid);
    IgnoreErrors([&] {
      const LayoutFile file(OpenSettingsFile(pcSystem, psFile), grid);
      LayoutReader reader(file, grid, pcSystem);
      reader.ApplyColumns(pbWidthOnly);
      if (pbWidthOnly) return;
      reader.ApplyRows();
      reader.ApplyFrozenCols();
    });
    if (pbWidthOnly || Exists(psFile)) return;
    SaveVsLayout(psFile, grid, false, pcSystem);
  });
}

void ApplyVsRows(const std::string& psFile, FlexGrid& grid, host::SystemObject& pcSystem) {
  IgnoreErrors([&] {
    const LayoutFile file(OpenSettingsFile(pcSystem, psFile), grid);
    const host::GridUpdate update(grid);
    LayoutReader reader(file, grid, pcSystem);
    reader.ReadColumns();
    reader.ApplyRows();
  });
}

namespace {

void SaveColumn(const LayoutFile& file, const FlexGrid& grid, int col, bool width_only) {
  const std::string key = LayoutFile::ColumnKey(col);
  const auto write = [&](std::string_view section, const std::string& value) {
    IgnoreErrors([&] { file.Write(section, key, value); });
  };
  const auto number = [](auto value) { return std::to_string(static_cast<int>(value)); };

  const int width = grid.ColWidth(col);
  write(layout::kHidden, width == 0 ? "1" : "0");
  if (width > 0) write(layout::kWidth, std::to_string(width));
  if (width_only) return;
  write(layout::kMerge, grid.MergeCol(col) ? "1" : "0");
  write(layout::kDataType, number(grid.ColDataType(col)));
  write(layout::kFormat, grid.ColFormat(col));
  write(layout::kAlignment, number(grid.ColAlignment(col)));
}

}  // namespace

void SaveVsLayout(const std::string& psFile, const FlexGrid& grid, bool pbWidthOnly,
                  host::SystemObject& pcSystem) {
  IgnoreErrors([&] {
    const LayoutFile file(OpenSettingsFile(pcSystem, psFile), grid);
    for (int col = 0; col < grid.Cols(); ++col) SaveColumn(file, grid, col, pbWidthOnly);
    if (pbWidthOnly) return;
    const auto write = [&](const char* key, int value) {
      IgnoreErrors([&] { file.Write(layout::kGrid, key, std::to_string(value)); });
    };
    const int fixed = grid.FixedRows();
    if (grid.Rows() > fixed) write(layout::kRowHeight, grid.RowHeight(fixed));
    if (fixed > 0) write(layout::kFixedRowHeight, grid.RowHeight(0));
    write(layout::kFrozenCols, grid.FrozenCols());
  });
}

}  // namespace tavrix::viewkit
