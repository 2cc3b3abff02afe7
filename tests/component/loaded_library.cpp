#include "component/loaded_library.h"

#include "com/failure.h"
#include "com/variant.h"
#include "qnDesignUI.h"
#include "tavrix.h"

namespace tavrix::test {

ComPtr<IUnknown> CreateView() {
  ComPtr<IUnknown> view;
  com::Check(CoCreateInstance(__uuidof(Kjkm), nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                              view.PutVoid()));
  return view;
}

ComPtr<IDispatch> ChildOf(const ComPtr<IUnknown>& view, std::string_view name) {
  ComPtr<IDispatch> controls;
  ComPtr<IDispatch> child;
  com::Check(view.As<IDesignUI>()->get_Controls(controls.Put()));
  com::Check(controls.As<IChildControls>()->get_Item(com::Variant(name).Get(), child.Put()));
  return child;
}

LoadedLibrary::LoadedLibrary() : module_(LoadLibraryW(L"tavrix.dll")) {
  if (module_ == nullptr) throw com::ComFailure(HRESULT_FROM_WIN32(GetLastError()));
}

std::wstring LoadedLibrary::File() const {
  wchar_t file[MAX_PATH];
  return {file, GetModuleFileNameW(module_, file, MAX_PATH)};
}

const IMAGE_DATA_DIRECTORY& LoadedLibrary::Directory(int which) const {
  const auto* dos = At<IMAGE_DOS_HEADER>(0);
  const auto* headers = At<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
  return headers->OptionalHeader.DataDirectory[which];
}

std::vector<std::string> LoadedLibrary::Exports() const {
  const auto* table =
      At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
  const auto* names = At<DWORD>(table->AddressOfNames);
  std::vector<std::string> exports;
  for (DWORD i = 0; i < table->NumberOfNames; ++i) exports.emplace_back(At<char>(names[i]));
  return exports;
}

std::vector<std::string> LoadedLibrary::Imports() const {
  std::vector<std::string> imports;
  const auto* table =
      At<IMAGE_IMPORT_DESCRIPTOR>(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress);
  for (; table->Name != 0; ++table) imports.emplace_back(At<char>(table->Name));
  return imports;
}

template <class Function>
Function* LoadedLibrary::Entry(const char* name) const {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
}

HRESULT LoadedLibrary::CanUnloadNow() const {
  return Entry<HRESULT STDAPICALLTYPE()>("DllCanUnloadNow")();
}

HRESULT LoadedLibrary::Register() const {
  return Entry<HRESULT STDAPICALLTYPE()>("DllRegisterServer")();
}

HRESULT LoadedLibrary::Unregister() const {
  return Entry<HRESULT STDAPICALLTYPE()>("DllUnregisterServer")();
}

HRESULT LoadedLibrary::ClassObject(const CLSID& clsid, const IID& iid, void** result) const {
  return Entry<HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, iid,
                                                                                      result);
}

}  // namespace tavrix::test
