#pragma once

namespace tavrix::viewkit {

/// Where a row of the grid is after rows have come, gone or changed places.
struct RowPlace {
  int row = 0;  ///< of a row that is gone: the place of the row that followed it
  bool gone = false;
};

}  // namespace tavrix::viewkit
