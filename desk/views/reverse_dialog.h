#pragma once

#include <chrono>
#include <string>

#include "viewkit/controls/date_picker.h"
#include "views/form_dialog.h"

namespace desk::views {

/// Asks for the date of the voucher that takes another one back.
class ReverseDialog : public FormDialog {
 public:
  /// `name` is that of the voucher; `date` is proposed.
  ReverseDialog(const std::string& name, std::chrono::year_month_day date);
  [[nodiscard]] bool Accepted() const { return accepted_; }
  [[nodiscard]] std::chrono::year_month_day Date() const { return date_.Value(); }

 private:
  void Accept() override;

  bool accepted_ = false;
  viewkit::DTPicker date_{"DTP"};
};

}  // namespace desk::views
