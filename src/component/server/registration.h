#pragma once

#include <windows.h>

namespace tavrix::component {

/// Writes the type library and the entries of the classes, and nothing else. After a failure what
/// was registered before stands as it stood. Both give S_OK, SELFREG_E_TYPELIB or SELFREG_E_CLASS.
[[nodiscard]] HRESULT Register() noexcept;

/// Removes what `Register` writes; what is not there any more is no failure. The ProgIDs, which x86
/// and x64 share, stay as long as the other one's class is registered.
[[nodiscard]] HRESULT Unregister() noexcept;

}  // namespace tavrix::component
