#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "book/ledger/folded_text.h"
#include "host/controls.h"
#include "host/objects.h"

namespace desk::book {

namespace host = tavrix::host;

/// What the last search of a navigator met, for whoever tells the user.
struct SearchTally {
  int matches = 0;   ///< rows that match, those that a filter hides left out
  int position = 0;  ///< of the row that was found among them, from 1; 0 for none and for a filter
};

/// Moves over the rows that a grid shows, finds and filters them by a piece of text.
///
/// A row matches when one of its visible columns contains the text, as `Folded` compares texts:
/// case, accents and width do not matter. Each member gives whether it found a row; what it selects
/// it also brings into view.
class GridSearch : public host::GridNavigator {
 public:
  /// Gives the texts of the first column, sorted, whose rows match by something that the grid does
  /// not show.
  using Unseen = std::function<std::vector<std::string>(const FoldedPattern& pattern)>;

  GridSearch() = default;
  GridSearch(std::shared_ptr<SearchTally> tally, Unseen unseen)
      : tally_(std::move(tally)), unseen_(std::move(unseen)) {}

  [[nodiscard]] bool MoveTop(host::Grid& grid) override;
  [[nodiscard]] bool MovePrevious(host::Grid& grid) override;
  [[nodiscard]] bool MoveNext(host::Grid& grid) override;
  [[nodiscard]] bool MoveBottom(host::Grid& grid) override;
  /// Searches from behind the current row round to it, through collapsed nodes too, which open, but
  /// not through rows that a filter hides. An empty text finds nothing.
  [[nodiscard]] bool Find(host::Grid& grid, const host::Value& data) override;
  /// The last `Find` again; false before the first. What matches unseen is asked for again with the
  /// next change of the grid.
  [[nodiscard]] bool FindNext(host::Grid& grid) override;
  /// Hides the rows that do not match and have no matching row below them in the outline; the nodes
  /// above a match open. An empty text shows all rows and closes the nodes that a filter has
  /// opened, but for those above the current row.
  [[nodiscard]] bool Filter(host::Grid& grid, const host::Value& data) override;

 private:
  class Pattern;
  struct Shown;
  /// The rows that match a text, hidden ones too, and the state of the grid that this is true of.
  struct Matches {
    std::string text;
    int grid = 0;
    std::uint64_t version = 0;
    std::vector<int> columns;
    std::vector<int> rows;
  };

  [[nodiscard]] Pattern PatternFor(const host::Grid& grid, const std::string& text) const;
  /// Looked for only when the grid's texts or columns have changed since the last time.
  [[nodiscard]] const std::vector<int>& MatchesOf(const host::Grid& grid);
  [[nodiscard]] Shown ShowMatches(host::Grid& grid, const Pattern& pattern);
  void ShowAll(host::Grid& grid);
  void CloseOpened(host::Grid& grid);

  std::shared_ptr<SearchTally> tally_ = std::make_shared<SearchTally>();
  Unseen unseen_;
  std::string sought_;
  Matches matches_;
  /// By a grid's position in its array: first-column texts of the nodes that a filter has opened.
  /// Row numbers would not outlive a change of the chart.
  std::map<int, std::vector<std::string>> opened_;
};

}  // namespace desk::book
