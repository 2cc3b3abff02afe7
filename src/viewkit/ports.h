#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/non_copyable.h"

/// The small ports through which views and models reach the platform.
namespace tavrix::viewkit {

/// Twips in one pixel at 96 dots per inch.
inline constexpr int kTwipsPerPixel = 15;
inline constexpr int kTwipsPerInch = 1440;

/// Measures text in the view's font.
class TextMeasure {
 public:
  virtual ~TextMeasure() = default;
  /// Width of one line of text in twips.
  [[nodiscard]] virtual int Width(std::string_view text, bool bold) const = 0;
  /// Height of a line in twips.
  [[nodiscard]] virtual int LineHeight() const = 0;
};

/// Without a screen: 90 twips for a narrow character, 180 for a wide (East Asian) one.
[[nodiscard]] const TextMeasure& PlainTextMeasure();

class DialogModel;

/// Everything that asks, or waits for, the user. Windows answers for real, a test by script.
class UserPort {
 public:
  virtual ~UserPort() = default;

  enum class Icon { kNone, kInformation, kWarning, kCritical, kQuestion };
  enum class Buttons {
    kOk,
    kYesNo,
    kYesNoDefaultNo,  ///< Enter gives No: for questions whose Yes loses something
  };
  enum class Answer { kOk, kYes, kNo };
  /// A modal message box.
  [[nodiscard]] virtual Answer Ask(const std::string& text, const std::string& title, Icon icon,
                                   Buttons buttons) = 0;
  /// A prompt for one line of text; empty when the user gives up.
  [[nodiscard]] virtual std::string Input(const std::string& prompt, const std::string& title) = 0;
  /// Shows `dialog` and returns when it has been closed.
  virtual void ShowModal(DialogModel& dialog) = 0;
  /// The hourglass pointer on and off; calls nest.
  virtual void SetWaitCursor(bool on) = 0;
  /// The title of every error report: the running program's description, else its base name.
  [[nodiscard]] virtual std::string ApplicationTitle() = 0;
};

/// The hourglass while it lives.
class WaitCursor : private host::NonCopyable {
 public:
  explicit WaitCursor(UserPort& user) : user_(user) { user_.SetWaitCursor(true); }
  ~WaitCursor() { user_.SetWaitCursor(false); }

 private:
  UserPort& user_;
};

}  // namespace tavrix::viewkit
