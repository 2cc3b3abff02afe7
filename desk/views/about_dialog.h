#pragma once

#include <functional>
#include <string>
#include <vector>

#include "viewkit/controls/command_button.h"
#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/label.h"
#include "viewkit/grid/flex_grid.h"

namespace desk::views {

namespace viewkit = tavrix::viewkit;

/// What program, book and database are, in a list whose rows can be copied.
class AboutDialog : public viewkit::DialogModel {
 public:
  struct Fact {
    std::string label;
    std::string text;
  };
  struct Calls {
    std::function<void(const std::string&)> copy;
    std::function<void()> open_log;
  };
  /// Facts without a text are left out.
  AboutDialog(const std::string& heading, const std::vector<Fact>& facts, Calls calls);

  /// All of it as lines of text.
  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  [[nodiscard]] viewkit::Control* FirstFocus() override { return &ok_; }

  std::string text_;
  Calls calls_;
  viewkit::Label heading_{"Lbl", 0};
  viewkit::FlexGrid grid_{"Vs"};
  viewkit::CommandButton copy_{"Cmd", 0};
  viewkit::CommandButton log_{"Cmd", 1};
  viewkit::CommandButton ok_{"Cmd", 2};
};

}  // namespace desk::views
