#pragma once

#include <functional>
#include <string>

#include "viewkit/ports.h"

namespace tavrix::bench {

/// A user who agrees to everything at once. A modal dialog is what `in_dialog` does with it.
class QuietUser : public viewkit::UserPort {
 public:
  std::function<void(viewkit::DialogModel&)> in_dialog;

  [[nodiscard]] Answer Ask(const std::string&, const std::string&, Icon, Buttons buttons) override {
    return buttons == Buttons::kOk ? Answer::kOk : Answer::kYes;
  }
  [[nodiscard]] std::string Input(const std::string&, const std::string&) override { return {}; }
  void ShowModal(viewkit::DialogModel& dialog) override {
    if (in_dialog) in_dialog(dialog);
  }
  void SetWaitCursor(bool) override {}
  [[nodiscard]] std::string ApplicationTitle() override { return "bench"; }
};

}  // namespace tavrix::bench
