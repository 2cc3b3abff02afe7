#include "component/resources.h"

#include <windows.h>

#include <winternl.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace tavrix::test {

namespace {

BOOL CALLBACK CountWindow(HWND, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  return TRUE;
}

BOOL CALLBACK CountTopWindow(HWND window, LPARAM count) {
  CountWindow(window, count);
  EnumChildWindows(window, CountWindow, count);
  return TRUE;
}

int Windows() {
  int count = 0;
  EnumThreadWindows(GetCurrentThreadId(), CountTopWindow, reinterpret_cast<LPARAM>(&count));
  return count;
}

/// Where the system does not count, the table of handles that it shares with its processes does.
int GdiObjectsInTable() {
  constexpr std::size_t kTable = sizeof(void*) == 8 ? 0xF8 : 0x94;  // in the process's block
  constexpr std::size_t kEntry = 24;
  constexpr std::size_t kType = 14;
  constexpr std::size_t kEntries = 0x4000;
  const auto* block = reinterpret_cast<const char*>(NtCurrentTeb()->ProcessEnvironmentBlock);
  const char* table = nullptr;
  std::memcpy(&table, block + kTable, sizeof table);
  int count = 0;
  for (std::size_t i = 0; table != nullptr && i < kEntries; ++i) {
    if (table[i * kEntry + kType] != 0) ++count;
  }
  return count;
}

int GdiObjects() {
  const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  return counted != 0 ? static_cast<int>(counted) : GdiObjectsInTable();
}

std::ptrdiff_t BytesInUse(HANDLE heap) {
  std::ptrdiff_t bytes = 0;
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(heap);
  while (HeapWalk(heap, &entry) != FALSE) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
      bytes += static_cast<std::ptrdiff_t>(entry.cbData);
  }
  HeapUnlock(heap);
  return bytes;
}

std::ptrdiff_t HeapBytes() {
  std::vector<HANDLE> heaps(64);
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  std::ptrdiff_t bytes = 0;
  for (DWORD i = 0; i < count && i < heaps.size(); ++i) bytes += BytesInUse(heaps[i]);
  return bytes;
}

}  // namespace

Resources Resources::Now() {
  return {Windows(), GdiObjects(), HeapBytes()};
}

}  // namespace tavrix::test
