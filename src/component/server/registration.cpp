#include "component/server/registration.h"

#include <oleauto.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "component/activex/ole_object.h"
#include "component/base/abi.h"
#include "component/base/module.h"
#include "component/base/type_library.h"
#include "component/server/classes.h"

namespace tavrix::component {

namespace {

/// One value of the registry; the key's unnamed one when `name` is null.
struct Value {
  std::wstring key;
  const wchar_t* name;
  std::wstring text;
};

struct KeyDeleter {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyDeleter>;

void CheckRegistry(LSTATUS status) {
  Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

std::wstring TextOfGuid(const GUID& guid) {
  wchar_t text[40];
  return {text, static_cast<std::size_t>(StringFromGUID2(guid, text, std::size(text))) - 1};
}

/// The identifier of the type library, which only the library itself holds.
GUID LibraryId(ITypeLib& library) {
  TLIBATTR* attributes = nullptr;
  Check(library.GetLibAttr(&attributes));
  const GUID guid = attributes->guid;
  library.ReleaseTLibAttr(attributes);
  return guid;
}

std::wstring ClassKey(const ClassEntry& entry) {
  return L"CLSID\\" + TextOfGuid(*entry.clsid);
}

/// All that is written for a class.
std::vector<Value> ValuesOf(const ClassEntry& entry, const std::wstring& library_id) {
  const std::wstring key = ClassKey(entry);
  const std::wstring prog_id = entry.prog_id;
  std::vector<Value> values = {
      {prog_id, nullptr, entry.description},
      {prog_id + L"\\CLSID", nullptr, TextOfGuid(*entry.clsid)},
      {key, nullptr, entry.description},
      {key + L"\\InprocServer32", nullptr, ThisModuleFile()},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\ProgID", nullptr, prog_id},
      {key + L"\\TypeLib", nullptr, library_id},
      {key + L"\\Version", nullptr, L"1.0"},
  };
  if (!entry.control) return values;
  values.push_back({key + L"\\Control", nullptr, L""});
  values.push_back({key + L"\\MiscStatus", nullptr, L"0"});
  values.push_back({key + L"\\MiscStatus\\1", nullptr, std::to_wstring(kMiscStatus)});
  return values;
}

void Write(const Value& value) {
  HKEY raw = nullptr;
  CheckRegistry(RegCreateKeyExW(HKEY_CLASSES_ROOT, value.key.c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                                nullptr, &raw, nullptr));
  const Key key(raw);
  CheckRegistry(RegSetValueExW(key.get(), value.name, 0, REG_SZ,
                               reinterpret_cast<const BYTE*>(value.text.c_str()),
                               static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t))));
}

void DeleteTree(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  if (status != ERROR_FILE_NOT_FOUND) CheckRegistry(status);
}

void WriteAll() {
  const auto library = TypeLibraryOf(kOwnTypeLibrary);
  std::wstring file = ThisModuleFile();
  Check(RegisterTypeLib(library.Get(), file.data(), nullptr));
  const std::wstring library_id = TextOfGuid(LibraryId(*library.Get()));
  for (const ClassEntry& entry : AllClasses()) {
    for (const Value& value : ValuesOf(entry, library_id)) Write(value);
  }
}

void DeleteTypeLibrary() {
  constexpr SYSKIND kKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  const GUID guid = LibraryId(*TypeLibraryOf(kOwnTypeLibrary).Get());
  const HRESULT result = UnRegisterTypeLib(guid, 1, 0, LOCALE_NEUTRAL, kKind);
  // Both say that there is no entry any more.
  if (result != TYPE_E_REGISTRYACCESS && result != E_INVALIDARG) Check(result);
}

}  // namespace

HRESULT Register() noexcept {
  const HRESULT result = Guarded(IID_NULL, [] { WriteAll(); });
  if (FAILED(result)) static_cast<void>(Unregister());
  return result;
}

HRESULT Unregister() noexcept {
  // Each part is tried whatever becomes of the others; the first failure is told.
  HRESULT first = Guarded(IID_NULL, [] { DeleteTypeLibrary(); });
  for (const ClassEntry& entry : AllClasses()) {
    for (const std::wstring& key : {ClassKey(entry), std::wstring(entry.prog_id)}) {
      const HRESULT result = Guarded(IID_NULL, [&] { DeleteTree(key); });
      if (SUCCEEDED(first)) first = result;
    }
  }
  return first;
}

}  // namespace tavrix::component
