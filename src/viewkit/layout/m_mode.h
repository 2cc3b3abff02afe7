#pragma once

#include <string>

#include "host/controls.h"
#include "host/objects.h"
#include "viewkit/grid/flex_grid.h"

/// Per-user layouts of grids (`mMode`): which columns are hidden, their widths, formats, sort and
/// totals, kept in a text file of sections and keys. Errors are ignored statement by statement: a
/// statement that fails is skipped, and nothing is reported. See docs/layout.md for the file.
namespace tavrix::viewkit {

/// The path of the layout file `psName` below the current user's folder, which gets the folder
/// "selfbb" when it has none. Throws `HostError` when the host gives no folder; a folder that
/// cannot be made is noticed when the file is written.
[[nodiscard]] std::string GetSelfFilePath(const std::string& psName, host::SystemObject& pcSystem);

inline constexpr int kNoArray = -1;
/// The control's position in its control array; `kNoArray` outside one.
[[nodiscard]] int GetCtrlIndex(const host::Control& ctrl);

/// Gives `grid` the layout that the file holds for it; what the file does not name stays. With
/// `pbWidthOnly` only hidden columns and widths come back. Otherwise a file that does not exist is
/// written from the grid, and afterwards the last column is the current one.
void ApplyVsLayout(const std::string& psFile, FlexGrid& grid, bool pbWidthOnly,
                   host::SystemObject& pcSystem);

/// What of a layout goes with the rows and is lost when a grid is loaded anew: order, totals,
/// heights. Columns stay as the user has them now.
void ApplyVsRows(const std::string& psFile, FlexGrid& grid, host::SystemObject& pcSystem);

/// Writes the layout of `grid`; with `pbWidthOnly` only hidden columns and widths. Keys that are
/// set by hand are left alone.
void SaveVsLayout(const std::string& psFile, const FlexGrid& grid, bool pbWidthOnly,
                  host::SystemObject& pcSystem);

}  // namespace tavrix::viewkit
