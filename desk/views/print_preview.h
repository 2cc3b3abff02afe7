#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/non_copyable.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/input.h"
#include "views/print_layout.h"

namespace desk::views {

/// One thing that can be printed.
struct PrintChoice {
  std::string name;  ///< for the user, where there are several
  std::function<PrintTable()> make;
};

/// What the user has chosen of paper. The sizes of paper are those of the list in the preview.
struct PrintSetup {
  int width = 11906;  ///< as it stands upright
  int height = 16838;
  bool landscape = false;
  friend bool operator==(const PrintSetup&, const PrintSetup&) = default;
};
[[nodiscard]] Paper PaperOf(const PrintSetup& setup);

/// The paper on which is printed what was laid out for `setup`: the same as long as the printer has
/// paper of that size and reaches to the margins; otherwise the printer's own, `printers`.
[[nodiscard]] Paper PaperForPrinter(const PrintSetup& setup, const Paper& printers);

/// Upright, unless the table has too little room so and enough across.
[[nodiscard]] bool WantsLandscape(const PrintTable& table, PrintSetup setup,
                                  const viewkit::TextMeasure& measure);

/// The pages as they would be printed: which of them is seen, how large, on what paper; and the row
/// of controls above them.
class PrintPreview : private tavrix::host::NonCopyable {
 public:
  enum class Zoom { kWholePage, kThreeQuarters, kFull, kPageWidth, kOneAndHalf, kDouble };
  struct Calls {
    std::function<void()> changed;  ///< what is seen is another
    std::function<void()> print;
    std::function<void()> close;
  };
  /// `choices` has one at least; the first is shown. Without a `setup` the table says how it wants
  /// the paper. The measure must outlive the preview. Throws what making the table throws.
  PrintPreview(std::vector<PrintChoice> choices, const PrintSetup& setup,
               const viewkit::TextMeasure& measure, Calls calls);

  [[nodiscard]] const viewkit::ControlList& Controls() const { return controls_; }
  /// Puts the controls where they belong in a strip of this width (twips) and gives its height.
  int Resize(int width);
  /// The title of the window.
  [[nodiscard]] std::string Title() const;

  [[nodiscard]] const PrintTable& Table() const { return table_; }
  [[nodiscard]] const PrintLayout& Layout() const { return *layout_; }
  [[nodiscard]] const PrintSetup& Setup() const { return setup_; }
  [[nodiscard]] int Page() const { return page_; }
  /// Bounded to the pages that there are; false when that is the one that is seen.
  bool GoTo(int page);
  [[nodiscard]] Zoom ZoomLevel() const { return zoom_; }
  void SetZoom(Zoom zoom);
  /// Keys of the window but those that scroll; true when it is used up.
  bool UseKey(viewkit::Key key, viewkit::Modifiers modifiers);
  /// "第 3 页 共 12 页", as the label says.
  [[nodiscard]] std::string PositionText() const;

 private:
  void MakeControls();
  void Listen();
  void Take(int choice);
  void LayOut();
  void ShowState();

  std::vector<PrintChoice> choices_;
  PrintSetup setup_;
  const viewkit::TextMeasure& measure_;
  Calls calls_;
  PrintTable table_;
  std::optional<PrintLayout> layout_;
  int page_ = 0;
  Zoom zoom_ = Zoom::kWholePage;
  bool filling_ = false;  // the boxes are being set: no choice of the user

  viewkit::CommandButton print_{"Cmd", 0};
  viewkit::ComboBox choice_{viewkit::ComboBox::Style::kList, "Combo", 0};
  viewkit::Label paper_label_{"Lbl", 0};
  viewkit::ComboBox paper_{viewkit::ComboBox::Style::kList, "Combo", 1};
  viewkit::CheckBox landscape_{"Chk"};
  viewkit::Label zoom_label_{"Lbl", 1};
  viewkit::ComboBox zooms_{viewkit::ComboBox::Style::kList, "Combo", 2};
  viewkit::CommandButton previous_{"Cmd", 1};
  viewkit::CommandButton next_{"Cmd", 2};
  viewkit::Label position_{"Lbl", 2};
  viewkit::CommandButton close_{"Cmd", 3};
  viewkit::ControlList controls_;
};

}  // namespace desk::views
