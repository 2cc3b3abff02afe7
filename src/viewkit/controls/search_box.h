#pragma once

#include <string>
#include <string_view>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// A line of text that asks its view to search as one types (`SearchBox`).
class SearchBox : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "SearchBox"; }

  [[nodiscard]] const std::string& Text() const { return text_; }
  /// Searches when the text changes, whoever sets it.
  void SetText(std::string text);
  /// The view hides what does not match (true), or goes to the first match (false).
  [[nodiscard]] bool FilterMode() const { return filter_mode_; }
  void SetFilterMode(bool filter);
  /// Searches again with what stands there.
  void Search();

  /// The mode as a text to keep, and back. The text searched for is not kept: a list that opens
  /// narrowed by what was typed last time would look incomplete. Any other text changes nothing.
  [[nodiscard]] std::string SaveStatus() const;
  void GetStatus(std::string_view status);

  Event<> SearchRequested;

 private:
  std::string text_;
  bool filter_mode_ = false;
};

}  // namespace tavrix::viewkit
