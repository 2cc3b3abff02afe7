#pragma once

#include <string>
#include <vector>

#include "host/controls.h"

namespace desk::book {

namespace host = tavrix::host;

/// What a user has made of a grid of accounts, told by codes (column 0), so that it can be put back
/// after the rows have been read again, or into another grid of the same accounts.
struct GridState {
  std::string current = {};            ///< of the current row; empty for none
  std::string top = {};                ///< of the first row below the header as it is scrolled
  std::vector<std::string> open = {};  ///< of the nodes that are open, in the order of the grid

  [[nodiscard]] static GridState Of(const host::Grid& grid);
  /// Opens and closes nodes, scrolls, and makes the row current, of a grid that is in the order of
  /// its codes. In place of an account that is not there any more comes the one that follows it.
  /// Which rows a filter hides stays as it is.
  void PutBack(host::Grid& grid) const;
};

}  // namespace desk::book
