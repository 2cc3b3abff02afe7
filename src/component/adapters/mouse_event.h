#pragma once

#include <memory>

#include "com/com_ptr.h"
#include "component/adapters/host_objects.h"
#include "host/objects.h"

namespace tavrix::component {

/// A mouse-wheel source of the host; null gives null. One without connection points is used
/// without its event. `owner` lives at least as long as an event that it handles.
[[nodiscard]] std::shared_ptr<host::MouseEvent> AdaptMouseEvent(
    const com::ComPtr<IDispatch>& object, SharedOwner owner);

}  // namespace tavrix::component
