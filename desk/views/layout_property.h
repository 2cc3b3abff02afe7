#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>

#include "host/non_copyable.h"
#include "viewkit/control.h"
#include "views/column_layout.h"

/// What of a column can be set in the dialog of columns: each property in one line of a table.
namespace desk::views {

/// The box in which one property is set.
class PropertyBox : private tavrix::host::NonCopyable {
 public:
  virtual ~PropertyBox() = default;

  [[nodiscard]] virtual viewkit::Control& Control() = 0;
  virtual void Show(const ColumnChoice& column) = 0;
  /// Takes over what the user has made of it. What stands there and was not touched stays as it is,
  /// whatever it is; so does what is no good.
  virtual void Take(ColumnChoice& column) const = 0;
  /// What the box holds can be taken over into `column`.
  [[nodiscard]] virtual bool IsGood(const ColumnChoice& /*column*/) const { return true; }
  /// The user's click on a box that can be ticked.
  virtual void Click() {}
  /// `changed` is called for every change, whoever makes it.
  virtual void OnChange(std::function<void()> changed) = 0;
};

struct ColumnProperty {
  /// In the list of columns; the width is twips.
  const char* heading;
  int width;
  viewkit::Alignment alignment;
  std::string (*text)(const ColumnChoice&);

  /// Null for what is only shown.
  std::unique_ptr<PropertyBox> (*make_box)(const char* caption) = nullptr;
  const char* caption = "";
  int label = -1;  ///< index of the label that shows the caption; -1: the box itself does
  /// Where the box stands: in which third of its frame, in which row. That is also the order of the
  /// Tab key.
  int third = 0;
  int row = 0;
  /// Whether the property means anything for a column; null: always.
  bool (*usable)(const ColumnChoice&) = nullptr;
};

/// Those that are set even where only widths are.
enum WidthProperty { kTitleProperty, kShownProperty, kWidthProperty, kWidthProperties };

/// In the order of the list's columns.
[[nodiscard]] std::span<const ColumnProperty> ColumnProperties();

/// Rounded, at 96 dots per inch.
[[nodiscard]] int ToPixels(int twips);
/// Pixels that a user has typed; 0 when it is no number from 1 to `max`.
[[nodiscard]] int TypedPixels(const std::string& typed, int max);

}  // namespace desk::views
