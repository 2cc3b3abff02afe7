#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "app/com.h"
#include "com/failure.h"
#include "tavrix.h"
#include "viewkit/grid/flex_grid.h"

/// Making the component's controls, and finding what is inside them.
namespace desk::app {

/// A new control of the component. Throws `host::HostError` with a text for users.
[[nodiscard]] ComPtr<IUnknown> CreateControl(const CLSID& clsid);

/// The child controls of a control. Throws `com::ComFailure`.
[[nodiscard]] ComPtr<IChildControls> ControlsOf(IUnknown* control);

/// One of them by its name. Throws `com::ComFailure`.
template <class Interface>
[[nodiscard]] ComPtr<Interface> Part(IChildControls* controls, const std::string& name) {
  ComPtr<IDispatch> found;
  tavrix::com::Check(controls->get_Item(Variant(std::string_view(name)).Get(), found.Put()));
  ComPtr<Interface> part = found.As<Interface>();
  if (!part) throw tavrix::com::ComFailure(E_NOINTERFACE);
  return part;
}

/// A grid of the component's as a model of the desk's own: name, index, and what its columns are;
/// it has a header and no data rows. Throws `com::ComFailure`.
[[nodiscard]] std::unique_ptr<tavrix::viewkit::FlexGrid> CopyColumns(IFlexGrid& grid);

}  // namespace desk::app
