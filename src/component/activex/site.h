#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <optional>
#include <string>

#include "com/com_ptr.h"
#include "com/variant.h"
#include "viewkit/color.h"
#include "viewkit/win32/view_window.h"

namespace tavrix::component {

/// The container's side of a control, and the properties it offers to all its controls. Without a
/// container everything is absent.
class Site {
 public:
  void Set(IOleClientSite* site) { client_ = com::ComPtr<IOleClientSite>(site); }
  [[nodiscard]] const com::ComPtr<IOleClientSite>& Client() const { return client_; }
  [[nodiscard]] com::ComPtr<IOleControlSite> Control() const {
    return client_.As<IOleControlSite>();
  }

  [[nodiscard]] std::optional<viewkit::Color> BackColor() const;
  /// Of texts on the background; the system's when the container has none.
  [[nodiscard]] viewkit::Color ForeColor() const;
  /// The system's font when the container has none.
  [[nodiscard]] viewkit::win32::FontSpec Font() const;
  /// Empty when the container gives none.
  [[nodiscard]] std::string DisplayName() const;

 private:
  /// An ambient property; nothing when the container does not know it.
  [[nodiscard]] std::optional<com::Variant> Ambient(DISPID id) const;
  [[nodiscard]] std::optional<viewkit::Color> AmbientColor(DISPID id) const;

  com::ComPtr<IOleClientSite> client_;
};

}  // namespace tavrix::component
