#pragma once

#include <functional>
#include <string>

#include "host/non_copyable.h"
#include "viewkit/color.h"
#include "viewkit/control.h"
#include "viewkit/win32/windows_user.h"

namespace tavrix::component {

/// What it takes to place a view in a container.
class EmbeddedView : private host::NonCopyable {
 public:
  EmbeddedView();
  virtual ~EmbeddedView() = default;

  [[nodiscard]] virtual viewkit::ControlList& Controls() = 0;
  /// Arranges the controls in a view of this size (twips).
  virtual void Resize(int width, int height) = 0;
  [[nodiscard]] virtual viewkit::Color BackColor() const = 0;
  virtual void SetBackColor(viewkit::Color color) = 0;
  [[nodiscard]] virtual viewkit::Event<>& BackColorChanged() = 0;
  /// The display name that the container gives the control.
  // NOLINTNEXTLINE(performance-unnecessary-value-param): a view that wants the name keeps it.
  virtual void SetContainerName(const std::string& /*name*/) {}

  /// How the container hears of modal windows; see `WindowsUser::Options`.
  void SetModalHooks(viewkit::win32::WindowsUser::Options hooks) { hooks_ = std::move(hooks); }

 protected:
  [[nodiscard]] viewkit::UserPort& User() { return user_; }

 private:
  viewkit::win32::WindowsUser::Options hooks_;
  viewkit::win32::WindowsUser user_;
};

}  // namespace tavrix::component
