#pragma once

#include <string>
#include <utility>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// One line of text, of any length. Getting the focus by key selects the whole text.
class TextBox : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "TextBox"; }

  [[nodiscard]] const std::string& Text() const { return text_; }
  /// Raises `Changed` when the text changes, whoever sets it.
  void SetText(std::string text);
  /// What is typed next replaces the whole text. Nothing without a window.
  void SelectAll() const { Notify({Change::Kind::kSelection}); }

  /// Shown while the box is empty and has not the focus. Before the box has a window.
  [[nodiscard]] const std::string& Placeholder() const { return placeholder_; }
  void SetPlaceholder(std::string text) { placeholder_ = std::move(text); }
  /// The text stands at the right edge, as amounts do. Before the box has a window.
  [[nodiscard]] bool AlignsRight() const { return aligns_right_; }
  void SetAlignRight(bool right) { aligns_right_ = right; }

  Event<> Changed;

 private:
  std::string text_;
  std::string placeholder_;
  bool aligns_right_ = false;
};

}  // namespace tavrix::viewkit
