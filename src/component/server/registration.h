#pragma once

#include <windows.h>

namespace tavrix::component {

/// Writes the type library and the entries of the classes, and nothing else. After a failure
/// nothing of it is left.
[[nodiscard]] HRESULT Register() noexcept;

/// Removes what `Register` writes; what is not there any more is no failure.
[[nodiscard]] HRESULT Unregister() noexcept;

}  // namespace tavrix::component
