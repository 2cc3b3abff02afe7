#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// A day typed as eight digits, year, month and day, with or without `-`, `/` or `.` between them.
/// The system's own box takes the parts of a day only one by one, with an arrow key between.
class TypedDay {
 public:
  enum class Result {
    kOther,     ///< no part of a day, or of its year: the native box has its own use for it
    kTaken,     ///< month and day, not yet whole
    kComplete,  ///< `Day` is what has been typed
  };

  [[nodiscard]] Result Add(char32_t unit);
  void Clear() { digits_.clear(); }
  /// Not of the calendar when month or day cannot be: "20240231".
  [[nodiscard]] std::chrono::year_month_day Day() const { return day_; }

 private:
  std::string digits_;
  std::chrono::year_month_day day_{};
};

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
