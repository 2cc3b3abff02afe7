#pragma once

#include <windows.h>

#include <oaidl.h>

#include "component/base/com_ptr.h"

namespace desk::app {

using tavrix::component::ComPtr;

/// The description of interface, class or event set `id` in the program's own type library of the
/// host's objects (its first resource of that kind); empty when the program carries none.
[[nodiscard]] ComPtr<ITypeInfo> TypeInfoOf(REFGUID id);

}  // namespace desk::app
