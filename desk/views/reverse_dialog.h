#pragma once

#include <chrono>
#include <string>

#include "viewkit/controls/date_picker.h"
#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/label.h"

namespace desk::views {

namespace viewkit = tavrix::viewkit;

/// Asks for the date of the voucher that takes another one back.
class ReverseDialog : public viewkit::DialogModel {
 public:
  /// `name` is that of the voucher; `date` is proposed.
  ReverseDialog(const std::string& name, std::chrono::year_month_day date);
  [[nodiscard]] bool Accepted() const { return accepted_; }
  [[nodiscard]] std::chrono::year_month_day Date() const { return date_.Value(); }

 private:
  bool accepted_ = false;
  viewkit::Label what_{"Lbl", 0};
  viewkit::Label how_{"Lbl", 1};
  viewkit::Label date_label_{"Lbl", 2};
  viewkit::DTPicker date_{"DTP"};
  viewkit::CommandButton ok_{"Cmd", 0};
  viewkit::CommandButton cancel_{"Cmd", 1};
};

}  // namespace desk::views
