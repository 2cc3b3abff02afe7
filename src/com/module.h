#pragma once

#include <windows.h>

#include <string>

namespace tavrix::com {

/// The module (DLL or program) that this code is linked into.
[[nodiscard]] HMODULE ThisModule();
/// Its file, with the path.
[[nodiscard]] std::wstring ThisModuleFile();

/// Objects and locks that keep the module loaded.
[[nodiscard]] long ModuleLocks();

/// Locks of a client, which come in pairs.
void LockModule() noexcept;
void UnlockModule() noexcept;

/// Keeps the module loaded as long as it lives.
class ModuleLock {
 public:
  ModuleLock() noexcept;
  ModuleLock(const ModuleLock&) noexcept : ModuleLock() {}
  ModuleLock& operator=(const ModuleLock&) = default;
  ~ModuleLock();
};

}  // namespace tavrix::com
