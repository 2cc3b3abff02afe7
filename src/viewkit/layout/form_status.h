#pragma once

#include <string>

#include "host/objects.h"
#include "viewkit/control.h"

/// The walk over a view's controls that keeps what the user has set in them, in a settings file,
/// and brings it back. Every error is ignored and nothing reported: what fails is left as it is.
namespace tavrix::viewkit {

/// The interface whose view is walked: form and picker differ in what they keep.
enum class StatusWalk { kForm, kPicker };

/// Restores the controls in their order. `pbWidthOnly` limits grids to hidden columns and widths;
/// it limits no other control.
void GetFormStatus(const ControlList& controls, const std::string& psFile, bool pbWidthOnly,
                   StatusWalk walk, host::SystemObject& pcSystem);

/// Writes what the controls hold now.
void SaveFormStatus(const ControlList& controls, const std::string& psFile, bool pbWidthOnly,
                    StatusWalk walk, host::SystemObject& pcSystem);

}  // namespace tavrix::viewkit
