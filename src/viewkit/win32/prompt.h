#pragma once

#include <string>

#include "viewkit/controls/command_button.h"
#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/text_box.h"

namespace tavrix::viewkit::win32 {

/// The window that asks for one line of text.
class Prompt : public DialogModel {
 public:
  Prompt(const std::string& prompt, const std::string& title);

  /// What was typed; empty when the user gave up.
  [[nodiscard]] const std::string& Answer() const { return answer_; }

 private:
  Label question_{"question"};
  TextBox text_{"text"};
  CommandButton accept_{"accept"};
  CommandButton cancel_{"cancel"};
  std::string answer_;
};

}  // namespace tavrix::viewkit::win32
