#pragma once

#include <vector>

#include "host/non_copyable.h"
#include "viewkit/controls/captioned.h"

namespace tavrix::viewkit {

class OptionButton;

/// The buttons of which at most one is chosen. Must outlive them.
class OptionGroup : private host::NonCopyable {
  friend class OptionButton;
  std::vector<OptionButton*> buttons_;
};

class OptionButton : public Captioned {
 public:
  OptionButton(OptionGroup& group, std::string name, std::optional<int> index = {});
  ~OptionButton() override;
  [[nodiscard]] std::string TypeName() const override { return "OptionButton"; }

  [[nodiscard]] bool Value() const { return value_; }
  /// The Tab key stops here: once in a group, at the button that is chosen, or at the first one
  /// while none is.
  [[nodiscard]] bool StopsTab() const;
  /// Choosing clears the group's other buttons, without an event of theirs, and raises `Clicked`.
  /// Clearing leaves the group without a choice and raises nothing.
  void SetValue(bool value);
  /// The user's click: chooses the button, unless it is disabled.
  void Click();

  Event<> Clicked;

 private:
  void Show(bool value);

  OptionGroup& group_;
  bool value_ = false;
};

}  // namespace tavrix::viewkit
