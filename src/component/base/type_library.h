#pragma once

#include <windows.h>

#include <oaidl.h>

#include "component/base/com_ptr.h"

namespace tavrix::component {

/// Resource numbers of the type libraries in the module: 1 is the component's own, the following
/// ones are the interface libraries.
inline constexpr int kOwnTypeLibrary = 1;
inline constexpr int kLastTypeLibrary = 5;

/// A type library of this module, read from the module itself: the registry is not asked. Throws
/// `ComFailure`.
[[nodiscard]] ComPtr<ITypeLib> TypeLibraryOf(int resource);

/// The description of an interface or class in any of this module's libraries.
[[nodiscard]] ComPtr<ITypeInfo> TypeInfoOf(const GUID& guid);

}  // namespace tavrix::component
