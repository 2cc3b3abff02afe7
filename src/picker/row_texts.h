#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "viewkit/grid/flex_grid.h"

namespace tavrix::picker {

/// The data rows of a grid as a search sees them: the texts of all columns of a row, each followed
/// by "%", in lower case. They are kept in one buffer, so that a search while one types passes
/// through memory once and builds nothing.
class RowTexts {
 public:
  /// Takes the texts from `grid`, unless they are those taken last.
  void Update(const viewkit::FlexGrid& grid);
  /// The first data row from `from` on (0 is the first one) that contains `wanted`, which is in
  /// lower case; -1 for none. Every row contains the empty text, and a row of totals nothing else.
  [[nodiscard]] int Find(std::string_view wanted, int from) const;

 private:
  [[nodiscard]] std::size_t Start(int row) const {
    return row == 0 ? 0 : ends_[static_cast<std::size_t>(row) - 1];
  }

  std::string texts_;
  std::vector<std::size_t> ends_;  // of each row in `texts_`
  std::uint64_t version_ = 0;      // of the grid's content; 0 before the first update
};

}  // namespace tavrix::picker
