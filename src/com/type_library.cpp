#include "com/type_library.h"

#include <oleauto.h>

#include <string>

#include "com/failure.h"
#include "com/module.h"

namespace tavrix::com {

namespace {

bool HasTypeLibrary(int resource) {
  return FindResourceW(ThisModule(), MAKEINTRESOURCEW(resource), L"TYPELIB") != nullptr;
}

}  // namespace

ComPtr<ITypeLib> TypeLibraryOf(int resource) {
  const std::wstring file = ThisModuleFile() + L"\\" + std::to_wstring(resource);
  ComPtr<ITypeLib> library;
  Check(LoadTypeLibEx(file.c_str(), REGKIND_NONE, library.Put()));
  return library;
}

ComPtr<ITypeInfo> TypeInfoOf(const GUID& guid) {
  for (int resource = 1; HasTypeLibrary(resource); ++resource) {
    ComPtr<ITypeInfo> info;
    if (SUCCEEDED(TypeLibraryOf(resource)->GetTypeInfoOfGuid(guid, info.Put()))) return info;
  }
  throw ComFailure(TYPE_E_ELEMENTNOTFOUND);
}

}  // namespace tavrix::com
