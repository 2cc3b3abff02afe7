#include "component/base/module.h"

#include <atomic>

#include "viewkit/win32/window.h"

namespace tavrix::component {

namespace {

std::atomic<long> locks = 0;

}  // namespace

std::wstring ThisModuleFile() {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(viewkit::win32::ThisModule(), file.data(),
                                            static_cast<DWORD>(file.size()));
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

}  // namespace tavrix::component
