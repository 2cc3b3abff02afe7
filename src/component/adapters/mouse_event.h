#pragma once

#include <memory>

#include "component/base/com_ptr.h"
#include "host/objects.h"

namespace tavrix::component {

/// A mouse-wheel source of the host; null gives null. One without connection points is used
/// without its event.
[[nodiscard]] std::shared_ptr<host::MouseEvent> AdaptMouseEvent(const ComPtr<IDispatch>& object);

}  // namespace tavrix::component
