#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "viewkit/ports.h"

namespace tavrix::test {

/// A user who answers by script and remembers what was asked.
class ScriptedUser : public viewkit::UserPort {
 public:
  struct Question {
    std::string text;
    std::string title;
    Icon icon = Icon::kNone;
    Buttons buttons = Buttons::kOk;
    friend bool operator==(const Question&, const Question&) = default;
  };

  /// The next answers, in order. Once they are used up an OK box is confirmed, and any other
  /// question fails the test and gets No.
  std::deque<Answer> answers;
  /// The next texts typed at a prompt; then the user gives up.
  std::deque<std::string> inputs;
  /// What happens while a question stands on the screen.
  std::function<void(const Question&)> in_question;
  /// What the user does in a modal dialog; without it a dialog fails the test.
  std::function<void(viewkit::DialogModel&)> in_dialog;
  std::string title = "测试程序";

  std::vector<Question> questions;
  std::vector<std::string> prompts;
  int dialogs = 0;
  int wait_depth = 0;    ///< hourglasses on now; 0 after a command that cleans up
  int deepest_wait = 0;  ///< 0 when there was none

  [[nodiscard]] Answer Ask(const std::string& text, const std::string& box_title, Icon icon,
                           Buttons buttons) override;
  [[nodiscard]] std::string Input(const std::string& prompt, const std::string& box_title) override;
  void ShowModal(viewkit::DialogModel& dialog) override;
  void SetWaitCursor(bool on) override;
  [[nodiscard]] std::string ApplicationTitle() override { return title; }
};

/// What the dialog's label behind the one with this caption says.
[[nodiscard]] std::string LabelBehind(const viewkit::DialogModel& dialog,
                                      const std::string& caption);

}  // namespace tavrix::test
