#include "views/column_layout.h"

#include <algorithm>
#include <utility>

#include "host/text.h"
#include "viewkit/layout/layout_file.h"

namespace desk::views {

namespace layout = tavrix::viewkit::layout;
using tavrix::viewkit::LayoutFile;

namespace {

constexpr int kDefaultWidth = 1440;
constexpr int kMaxValueKind = 8;

/// A width or a height of the file that a screen can show.
int Twips(const LayoutFile& file, std::string_view section, const std::string& key, int fallback) {
  const std::string stored = file.Read(section, key, std::to_string(fallback));
  return static_cast<int>(std::clamp(host::LeadingNumber(stored), 0.0, 32'767.0));
}

/// A number of the file as one of the numbers from 0 to `most`; 0 for any other.
int Choice(const LayoutFile& file, std::string_view section, const std::string& key, int most) {
  const double number = host::LeadingNumber(file.Read(section, key, "0"));
  return number >= 0 && number <= most ? static_cast<int>(number) : 0;
}

ColumnChoice ReadColumn(const LayoutFile& file, const viewkit::FlexGrid& grid, int col) {
  const std::string key = LayoutFile::ColumnKey(col);
  ColumnChoice column{.col = col, .title = std::string(grid.TextMatrix(0, col))};
  const int width = grid.ColWidth(col);
  column.shown = width > 0;
  column.width = width;
  if (!column.shown) {
    const int stored = Twips(file, layout::kWidth, key, 0);
    column.width = stored > 0 ? stored : kDefaultWidth;
  }
  column.type = grid.ColDataType(col);
  column.format = grid.ColFormat(col);
  column.decimals = std::string(host::Trimmed(file.Read(layout::kDecimals, key, "")));
  column.value_kind = Choice(file, layout::kValueKind, key, kMaxValueKind);
  column.alignment = grid.ColAlignment(col);
  constexpr int kMaxSort = static_cast<int>(viewkit::SortOrder::kStringDescending);
  column.sort = static_cast<viewkit::SortOrder>(Choice(file, layout::kSort, key, kMaxSort));
  column.merge = grid.MergeCol(col);
  column.group = file.ReadFlag(layout::kGroup, key, false);
  column.total = file.ReadFlag(layout::kTotal, key, false);
  return column;
}

/// Writes the values of one column that have changed.
class ColumnWriter {
 public:
  ColumnWriter(const LayoutFile& file, int col) : file_(file), key_(LayoutFile::ColumnKey(col)) {}

  void Text(std::string_view section, const std::string& before, const std::string& after) const {
    if (before != after) file_.Write(section, key_, after);
  }
  void Number(std::string_view section, int before, int after) const {
    Text(section, std::to_string(before), std::to_string(after));
  }

 private:
  const LayoutFile& file_;
  std::string key_;
};

void WriteColumn(const LayoutFile& file, const ColumnChoice& before, const ColumnChoice& after) {
  const ColumnWriter writer(file, after.col);
  writer.Number(layout::kHidden, before.shown ? 0 : 1, after.shown ? 0 : 1);
  // A column that comes back needs a width, which the file may not hold.
  const bool comes_back = after.shown && !before.shown;
  writer.Number(layout::kWidth, comes_back ? 0 : before.width, after.width);
  writer.Number(layout::kDataType, static_cast<int>(before.type), static_cast<int>(after.type));
  writer.Text(layout::kFormat, before.format, after.format);
  writer.Text(layout::kDecimals, before.decimals, after.decimals);
  writer.Number(layout::kValueKind, before.value_kind, after.value_kind);
  writer.Number(layout::kAlignment, static_cast<int>(before.alignment),
                static_cast<int>(after.alignment));
  writer.Number(layout::kSort, static_cast<int>(before.sort), static_cast<int>(after.sort));
  writer.Number(layout::kMerge, before.merge ? 1 : 0, after.merge ? 1 : 0);
  writer.Number(layout::kGroup, before.group ? 1 : 0, after.group ? 1 : 0);
  writer.Number(layout::kTotal, before.total ? 1 : 0, after.total ? 1 : 0);
}

}  // namespace

LayoutChoice ReadLayout(const std::string& path, const viewkit::FlexGrid& grid,
                        host::SystemObject& system) {
  const LayoutFile file(viewkit::OpenSettingsFile(system, path), grid);
  LayoutChoice choice{.frozen = grid.FrozenCols()};
  const int fixed = grid.FixedRows();
  choice.header_height =
      Twips(file, layout::kGrid, layout::kFixedRowHeight, fixed > 0 ? grid.RowHeight(0) : 0);
  choice.row_height = Twips(file, layout::kGrid, layout::kRowHeight,
                            grid.Rows() > fixed ? grid.RowHeight(fixed) : 0);
  choice.clear_totals = file.ReadFlag(layout::kGrid, layout::kClearTotals, false);
  for (int col = 0; col < grid.Cols(); ++col) {
    if (!grid.ColHidden(col)) choice.columns.push_back(ReadColumn(file, grid, col));
  }
  return choice;
}

void WriteLayout(const std::string& path, const viewkit::FlexGrid& grid, const LayoutChoice& before,
                 const LayoutChoice& after, host::SystemObject& system) {
  const LayoutFile file(viewkit::OpenSettingsFile(system, path), grid);
  const std::size_t count = std::min(before.columns.size(), after.columns.size());
  for (std::size_t i = 0; i < count; ++i) WriteColumn(file, before.columns[i], after.columns[i]);
  const auto write = [&](const char* key, int was, int is) {
    if (was != is) file.Write(layout::kGrid, key, std::to_string(is));
  };
  write(layout::kFrozenCols, before.frozen, after.frozen);
  write(layout::kFixedRowHeight, before.header_height, after.header_height);
  write(layout::kRowHeight, before.row_height, after.row_height);
  write(layout::kClearTotals, before.clear_totals ? 1 : 0, after.clear_totals ? 1 : 0);
}

}  // namespace desk::views
