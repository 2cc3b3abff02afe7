#pragma once

#include <cstdint>

namespace tavrix::viewkit {

/// What of a model has changed, so that its window repaints no more than that.
struct Change {
  enum class Kind {
    kBounds,     ///< position, size
    kState,      ///< visible, enabled, tool tip, colours
    kContent,    ///< texts, items, rows: everything inside
    kRows,       ///< the grid rows `first` to `last`
    kColumns,    ///< widths or visibility of grid columns
    kSelection,  ///< the current row, the selected rows; `first` to `last` where known
    kScroll,     ///< the part that is seen
  };
  Kind kind = Kind::kContent;
  int first = -1;
  int last = -1;
};

/// The native half of a widget. A model without one works completely; a peer shows its model and
/// feeds the user's input into it. The window owns the peer, the model only refers to it.
class Peer {
 public:
  virtual ~Peer() = default;
  [[nodiscard]] virtual std::intptr_t Handle() const = 0;
  virtual void Update(const Change& change) = 0;
  /// Does at once what a notice made the peer put off, as far as it tells the model anything.
  virtual void Settle() {}
  /// False when the window cannot take the focus (it is hidden or disabled).
  virtual bool TakeFocus() = 0;
};

}  // namespace tavrix::viewkit
