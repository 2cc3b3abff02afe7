#include "com/module.h"

#include <atomic>

namespace tavrix::com {

namespace {

std::atomic<long> locks = 0;

}  // namespace

HMODULE ThisModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&locks), &module);
  return module;
}

std::wstring ThisModuleFile() {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(ThisModule(), file.data(), static_cast<DWORD>(file.size()));
    if (length < file.size()) return file.substr(0, length);
    file.resize(file.size() * 2);
  }
}

long ModuleLocks() {
  return locks;
}

void LockModule() noexcept {
  ++locks;
}

void UnlockModule() noexcept {
  --locks;
}

ModuleLock::ModuleLock() noexcept {
  LockModule();
}

ModuleLock::~ModuleLock() {
  UnlockModule();
}

}  // namespace tavrix::com
