#pragma once

#include <string>
#include <vector>

#include "host/controls.h"
#include "host/objects.h"

namespace desk::book {

namespace host = tavrix::host;

/// Moves over the rows that a grid shows, finds and filters them by a piece of text.
///
/// A row matches when one of its visible columns contains the text, without regard to case. Each
/// member gives whether it found a row; what it selects it also brings into view.
class GridSearch : public host::GridNavigator {
 public:
  [[nodiscard]] bool MoveTop(host::Grid& grid) override;
  [[nodiscard]] bool MovePrevious(host::Grid& grid) override;
  [[nodiscard]] bool MoveNext(host::Grid& grid) override;
  [[nodiscard]] bool MoveBottom(host::Grid& grid) override;
  /// Searches from behind the current row round to it, through collapsed nodes too, which open, but
  /// not through rows that a filter hides. An empty text finds nothing.
  [[nodiscard]] bool Find(host::Grid& grid, const host::Value& data) override;
  /// The last `Find` again; false before the first.
  [[nodiscard]] bool FindNext(host::Grid& grid) override;
  /// Hides the rows that do not match and have no matching row below them in the outline; the nodes
  /// above a match open. An empty text shows all rows.
  [[nodiscard]] bool Filter(host::Grid& grid, const host::Value& data) override;

 private:
  std::string sought_;
};

}  // namespace desk::book
