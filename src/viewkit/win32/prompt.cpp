#include "viewkit/win32/prompt.h"

namespace tavrix::viewkit::win32 {
namespace {

// Twips.
constexpr int kWidth = 5400;
constexpr int kMargin = 180;
constexpr int kLine = 330;
constexpr int kButtonWidth = 1200;
constexpr int kButtonHeight = 375;
constexpr int kTextTop = kMargin + kLine + 60;
constexpr int kButtonTop = kTextTop + kLine + 210;

enum Identifier { kText = 100, kAccept = 1, kCancel = 2 };

}  // namespace

Prompt::Prompt(const std::string& prompt, const std::string& title) : DialogModel("TavrixInput") {
  SetCaption(title);
  SetSize(kWidth, kButtonTop + kButtonHeight + kMargin);
  question_.SetCaption(prompt);
  accept_.SetCaption("确定");
  cancel_.SetCaption("取消");
  question_.SetBounds({kMargin, kMargin, kWidth - 2 * kMargin, kLine});
  text_.SetBounds({kMargin, kTextTop, kWidth - 2 * kMargin, kLine});
  const int cancel_left = kWidth - kMargin - kButtonWidth;
  accept_.SetBounds({cancel_left - 120 - kButtonWidth, kButtonTop, kButtonWidth, kButtonHeight});
  cancel_.SetBounds({cancel_left, kButtonTop, kButtonWidth, kButtonHeight});
  Add(question_);
  Add(text_, kText);
  Add(accept_, kAccept);
  Add(cancel_, kCancel);
  SetButtons(accept_, cancel_);
  accept_.Clicked.Add([this] {
    answer_ = text_.Text();
    Close();
  });
  cancel_.Clicked.Add([this] { Close(); });
}

}  // namespace tavrix::viewkit::win32
