#include "support/scripted_user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/label.h"

namespace tavrix::test {

namespace {

template <class Item>
Item TakeFirst(std::deque<Item>& items) {
  Item item = std::move(items.front());
  items.pop_front();
  return item;
}

}  // namespace

viewkit::UserPort::Answer ScriptedUser::Ask(const std::string& text, const std::string& box_title,
                                            Icon icon, Buttons buttons) {
  questions.push_back({text, box_title, icon, buttons});
  if (in_question) in_question(Question(questions.back()));
  if (!answers.empty()) return TakeFirst(answers);
  if (buttons == Buttons::kOk) return Answer::kOk;
  ADD_FAILURE() << "unexpected question: " << text;
  return Answer::kNo;
}

std::string ScriptedUser::Input(const std::string& prompt, const std::string&) {
  prompts.push_back(prompt);
  return inputs.empty() ? std::string() : TakeFirst(inputs);
}

void ScriptedUser::ShowModal(viewkit::DialogModel& dialog) {
  ++dialogs;
  if (in_dialog) return in_dialog(dialog);
  ADD_FAILURE() << "unexpected dialog";
}

void ScriptedUser::SetWaitCursor(bool on) {
  wait_depth += on ? 1 : -1;
  deepest_wait = std::max(deepest_wait, wait_depth);
  EXPECT_GE(wait_depth, 0) << "the hourglass was taken off twice";
}

std::string LabelBehind(const viewkit::DialogModel& dialog, const std::string& caption) {
  bool found = false;
  for (std::size_t i = 0; i < dialog.Controls().Count(); ++i) {
    const auto* label = dynamic_cast<const viewkit::Label*>(&dialog.Controls().At(i));
    if (found) return label->Caption();
    found = label != nullptr && label->Caption() == caption;
  }
  return "(no label)";
}

}  // namespace tavrix::test
