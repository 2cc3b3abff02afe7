#pragma once

#include "host/controls.h"

/// Where controls stand in a dialog: labels and boxes in rows of one pitch, in frames, and buttons
/// below them. All sizes are twips.
namespace tavrix::viewkit::form {

inline constexpr int kMargin = 180;  ///< around everything, and beside the content of a frame
inline constexpr int kGap = 120;     ///< between frames, and between buttons
inline constexpr int kRowPitch = 420;
inline constexpr int kBoxHeight = 315;
inline constexpr int kFrameTop = 330;  ///< from a frame's upper edge to its first row
inline constexpr int kButtonWidth = 1290;
inline constexpr int kButtonHeight = 390;

/// Of a frame around so many rows.
[[nodiscard]] constexpr int FrameHeight(int rows) {
  return kFrameTop + rows * kRowPitch;
}

/// Rows of a label and a box beside it. They count from 0.
struct Rows {
  int left;
  int top;  ///< of the first row
  int label_width;
  int field_width;

  /// Those in a frame that begins at `left` and `top`.
  [[nodiscard]] static constexpr Rows InFrame(int left, int top, int label_width, int field_width) {
    return {left + kMargin, top + kFrameTop, label_width, field_width};
  }

  [[nodiscard]] constexpr host::Bounds At(int row, int offset, int width) const {
    return {left + offset, top + row * kRowPitch, width, kBoxHeight};
  }
  /// A label's text stands on the line of the text in the box beside it.
  [[nodiscard]] constexpr host::Bounds Label(int row) const {
    constexpr int kDrop = 30;
    host::Bounds bounds = At(row, 0, label_width);
    bounds.top += kDrop;
    bounds.height -= kDrop;
    return bounds;
  }
  /// A box in the label's place.
  [[nodiscard]] constexpr host::Bounds Lead(int row) const { return At(row, 0, label_width); }
  [[nodiscard]] constexpr host::Bounds Field(int row) const {
    return At(row, label_width, field_width);
  }
  /// A box without a label.
  [[nodiscard]] constexpr host::Bounds Whole(int row) const {
    return At(row, 0, label_width + field_width);
  }
};

/// A button at the right edge of a dialog; the position counts from 0 at the right.
[[nodiscard]] constexpr host::Bounds Button(int dialog_width, int position, int top) {
  const int left = dialog_width - kMargin - (position + 1) * kButtonWidth - position * kGap;
  return {left, top, kButtonWidth, kButtonHeight};
}

}  // namespace tavrix::viewkit::form
