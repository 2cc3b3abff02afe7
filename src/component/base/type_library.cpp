#include "component/base/type_library.h"

#include <oleauto.h>

#include <string>

#include "component/base/failure.h"
#include "component/base/module.h"

namespace tavrix::component {

ComPtr<ITypeLib> TypeLibraryOf(int resource) {
  const std::wstring file = ThisModuleFile() + L"\\" + std::to_wstring(resource);
  ComPtr<ITypeLib> library;
  Check(LoadTypeLibEx(file.c_str(), REGKIND_NONE, library.Put()));
  return library;
}

ComPtr<ITypeInfo> TypeInfoOf(const GUID& guid) {
  for (int resource = kOwnTypeLibrary; resource <= kLastTypeLibrary; ++resource) {
    ComPtr<ITypeInfo> info;
    if (SUCCEEDED(TypeLibraryOf(resource)->GetTypeInfoOfGuid(guid, info.Put()))) return info;
  }
  throw ComFailure(TYPE_E_ELEMENTNOTFOUND);
}

}  // namespace tavrix::component
