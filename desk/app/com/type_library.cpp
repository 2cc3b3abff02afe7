#include "app/com/type_library.h"

#include <array>

#include "viewkit/win32/window.h"

namespace desk::app {
namespace {

ComPtr<ITypeLib> LoadOwnLibrary() {
  std::array<wchar_t, 32768> path{};
  GetModuleFileNameW(tavrix::viewkit::win32::ThisModule(), path.data(),
                     static_cast<DWORD>(path.size()));
  ComPtr<ITypeLib> library;
  LoadTypeLibEx(path.data(), REGKIND_NONE, library.Put());
  return library;
}

}  // namespace

ComPtr<ITypeInfo> TypeInfoOf(REFGUID id) {
  static const ComPtr<ITypeLib> library = LoadOwnLibrary();
  ComPtr<ITypeInfo> info;
  if (library) library->GetTypeInfoOfGuid(id, info.Put());
  return info;
}

}  // namespace desk::app
