#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/com_ptr.h"

namespace tavrix::com {

/// A type library of this module, read from the module itself: the registry is not asked. Their
/// resources are numbered from 1 without a gap. Throws `ComFailure`.
[[nodiscard]] ComPtr<ITypeLib> TypeLibraryOf(int resource);

/// The description of an interface or class in any of this module's libraries. Throws `ComFailure`.
[[nodiscard]] ComPtr<ITypeInfo> TypeInfoOf(const GUID& guid);

}  // namespace tavrix::com
