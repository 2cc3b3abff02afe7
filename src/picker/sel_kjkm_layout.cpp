#include <algorithm>
#include <initializer_list>

#include "picker/sel_kjkm.h"

// Where the controls stand: search box and check boxes above, tree and list with the splitter
// between them, then counter and message, then the buttons.
namespace tavrix::picker {

namespace {

using viewkit::kTwipsPerPixel;

constexpr int kGap = 4 * kTwipsPerPixel;
constexpr int kLine = 24 * kTwipsPerPixel;
constexpr int kLabelLine = 18 * kTwipsPerPixel;
constexpr int kButtonWidth = 72 * kTwipsPerPixel;
constexpr int kMinSearchWidth = 100 * kTwipsPerPixel;
constexpr int kCountWidth = 170 * kTwipsPerPixel;
constexpr int kMinPane = 60 * kTwipsPerPixel;
constexpr int kTreeShare = 30;  // per cent of the width, until the user drags the splitter

/// Puts controls of fixed widths side by side. Those that are not visible take no room: they stand
/// where the next one does, for a host that shows them.
struct Row {
  Placement& placement;
  int left;
  int top;
  int height;
  void Place(viewkit::Control& control, int width) {
    placement.Place(control, {left, top, width, height});
    if (control.Visible()) left += width + kGap;
  }
};

int CheckBoxWidth(const viewkit::CheckBox& box) {
  constexpr int kMark = 22 * kTwipsPerPixel;
  return kMark + viewkit::PlainTextMeasure().Width(box.Caption(), false);
}

}  // namespace

void selKjkm::Resize(int width, int height) {
  if (width != width_ || height != height_) placement_.StartAnew();
  width_ = width;
  height_ = height;
  PlaceControls();
}

void selKjkm::PlaceControls() {
  if (width_ < 0) return;
  const int width = width_;
  const int height = height_;
  const int room = std::max(0, width - 2 * kGap);
  const int panes_top = PlaceSearchLine(room);
  const int buttons_top = height - kGap - kLine;
  const int labels_top = buttons_top - kGap - kLabelLine;
  PlacePanes(panes_top, std::max(0, labels_top - kGap - panes_top), room);

  const int count_width = std::min(kCountWidth, room / 2);
  Row labels{placement_, kGap, labels_top, kLabelLine};
  labels.Place(LblCount_, count_width);
  labels.Place(lblMessage_, std::max(0, room - count_width - kGap));

  const int button_width = std::min(kButtonWidth, std::max(0, (room - 3 * kGap) / kButtons));
  Row buttons{placement_, kGap, buttons_top, kLine};
  // What changes the list stands on the left, what ends the pick on the right.
  for (const int index : {2, 3})
    buttons.Place(*Cmd_[static_cast<std::size_t>(index)], button_width);
  buttons.left = std::max(buttons.left, width - 2 * (button_width + kGap));
  for (const int index : {0, 1})
    buttons.Place(*Cmd_[static_cast<std::size_t>(index)], button_width);
}

int selKjkm::PlaceSearchLine(int room) {
  int boxes_width = 0;
  const std::initializer_list<viewkit::CheckBox*> boxes = {&Check_, &Chk_, &ChkFind_};
  for (const viewkit::CheckBox* box : boxes) {
    if (box->Visible()) boxes_width += CheckBoxWidth(*box) + kGap;
  }
  // The boxes go to a line of their own where they would leave the search box too little room.
  const bool two_lines = room - boxes_width < kMinSearchWidth;
  const int search_width = two_lines ? room : room - boxes_width;
  placement_.Place(SearchBox1_, {kGap, kGap, search_width, kLine});
  Row line{placement_, two_lines ? kGap : 2 * kGap + search_width,
           two_lines ? 2 * kGap + kLine : kGap, kLine};
  for (viewkit::CheckBox* box : boxes) line.Place(*box, CheckBoxWidth(*box));
  return line.top + kLine + kGap;
}

void selKjkm::PlacePanes(int top, int height, int room) {
  const int wanted = splitter_dragged_ ? Splitter1_.Position() - kGap : room * kTreeShare / 100;
  const int most = std::max(0, room - kGap - kMinPane);
  const int tree_width = std::clamp(wanted, std::min(kMinPane, most), most);
  const int grid_left = kGap + tree_width + kGap;
  placement_.Place(TV_, {kGap, top, tree_width, height});
  placement_.Place(Splitter1_, {kGap + tree_width, top, kGap, height});
  placement_.Place(Vs_, {grid_left, top, std::max(0, kGap + room - grid_left), height});
}

void selKjkm::OnSplitterMoved() {
  splitter_dragged_ = true;
  PlaceControls();
}

}  // namespace tavrix::picker
