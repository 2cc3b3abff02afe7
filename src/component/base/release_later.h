#pragma once

#include <windows.h>

#include <unknwn.h>

#include "component/base/com_ptr.h"

namespace tavrix::component {

/// Releases `object` from the thread's message loop: for an object whose own code is still at work
/// further up the stack.
void ReleaseLater(ComPtr<IUnknown> object);

}  // namespace tavrix::component
