#pragma once

#include <chrono>
#include <string>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// A box for a day of the calendar (`DTPicker`).
class DTPicker : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "DTPicker"; }

  [[nodiscard]] std::chrono::year_month_day Value() const { return value_; }
  /// A day that the calendar does not have changes nothing.
  void SetValue(std::chrono::year_month_day value) {
    if (!value.ok() || value == value_) return;
    value_ = value;
    Notify({Change::Kind::kContent});
    Changed.Raise();
  }

  Event<> Changed;

 private:
  std::chrono::year_month_day value_{std::chrono::year(1900), std::chrono::January,
                                     std::chrono::day(1)};
};

/// The same of the application family's own make.
class gcDTP : public DTPicker {
 public:
  using DTPicker::DTPicker;
  [[nodiscard]] std::string TypeName() const override { return "gcDTP"; }
};

}  // namespace tavrix::viewkit
