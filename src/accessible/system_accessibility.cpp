#include "accessible/system_accessibility.h"

#include "com/failure.h"

namespace tavrix::accessible {
namespace {

template <class Function>
Function Find(HMODULE library, const char* name) {
  const auto found = GetProcAddress(library, name);
  if (found == nullptr) throw com::ComFailure(HRESULT_FROM_WIN32(GetLastError()));
  // The library has it as this type of function.
  return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

SystemAccessibility Load() {
  const HMODULE library = LoadLibraryExW(L"oleacc.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (library == nullptr) throw com::ComFailure(HRESULT_FROM_WIN32(GetLastError()));
  return {Find<decltype(&LresultFromObject)>(library, "LresultFromObject"),
          Find<decltype(&CreateStdAccessibleObject)>(library, "CreateStdAccessibleObject")};
}

}  // namespace

const SystemAccessibility& SystemAccessibility::Get() {
  static const SystemAccessibility system = Load();
  return system;
}

}  // namespace tavrix::accessible
