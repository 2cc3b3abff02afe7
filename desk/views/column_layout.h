#pragma once

#include <string>
#include <vector>

#include "host/objects.h"
#include "viewkit/grid/flex_grid.h"

/// What a user may choose of a grid's layout, the keys included that a view never writes itself.
namespace desk::views {

namespace host = tavrix::host;
namespace viewkit = tavrix::viewkit;

/// One column as the user sees it. Widths are twips.
struct ColumnChoice {
  int col = 0;  ///< in the grid
  std::string title = {};
  bool shown = true;
  int width = 0;  ///< also of a hidden column: what it gets when it is shown again
  viewkit::ColumnType type = viewkit::ColumnType::kEmpty;
  std::string format = {};
  std::string decimals = {};  ///< decimal places instead of those of the format; empty for none
  int value_kind = 0;         ///< 1 to 8: decimal places from the host's settings; 0 for none
  viewkit::Alignment alignment = viewkit::Alignment::kGeneral;
  viewkit::SortOrder sort = viewkit::SortOrder::kNone;
  bool merge = false;
  bool group = false;
  bool total = false;
  friend bool operator==(const ColumnChoice&, const ColumnChoice&) = default;
};

struct LayoutChoice {
  std::vector<ColumnChoice> columns = {};
  int frozen = 0;             ///< leading columns that do not scroll
  int header_height = 0;      ///< twips; 0 for that of a line of text
  int row_height = 0;         ///< of all other rows
  bool clear_totals = false;  ///< totals that stand go even where the layout has none of its own
  friend bool operator==(const LayoutChoice&, const LayoutChoice&) = default;
};

/// How much of a layout a view takes back when it is restored.
enum class LayoutScope { kWidths, kEverything };

/// The layout of `grid` as it stands, with what the file at `path` says beyond that. Columns that
/// the view itself hides are left out. Throws what the host raises.
[[nodiscard]] LayoutChoice ReadLayout(const std::string& path, const viewkit::FlexGrid& grid,
                                      host::SystemObject& system);

/// Writes what of `after` differs from `before`; all else in the file stays as it is. `grid` gives
/// the names of the sections. Throws what the host raises when the file cannot be written.
void WriteLayout(const std::string& path, const viewkit::FlexGrid& grid, const LayoutChoice& before,
                 const LayoutChoice& after, host::SystemObject& system);

}  // namespace desk::views
