#include "component/server/registration.h"

#include <oleauto.h>
#include <olectl.h>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "com/abi.h"
#include "com/bstr.h"
#include "com/module.h"
#include "com/type_library.h"
#include "component/activex/ole_object.h"
#include "component/server/classes.h"
#include "host/non_copyable.h"

namespace tavrix::component {

namespace {

/// The resource of the component's own type library; those of the interfaces follow.
constexpr int kComponentLibrary = 1;

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
  com::Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

std::wstring TextOfGuid(const GUID& guid) {
  wchar_t text[40];
  return {text, static_cast<std::size_t>(StringFromGUID2(guid, text, std::size(text))) - 1};
}

/// The identifier of the type library, which only the library itself holds.
GUID LibraryId(ITypeLib& library) {
  TLIBATTR* attributes = nullptr;
  com::Check(library.GetLibAttr(&attributes));
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
      {key + L"\\InprocServer32", nullptr, com::ThisModuleFile()},
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

Key Open(const std::wstring& name, REGSAM access) {
  HKEY key = nullptr;
  const bool open =
      RegOpenKeyExW(HKEY_CLASSES_ROOT, name.c_str(), 0, access, &key) == ERROR_SUCCESS;
  return Key(open ? key : nullptr);
}

void DeleteTree(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  if (status != ERROR_FILE_NOT_FOUND) CheckRegistry(status);
}

/// What a value was before it was written: nothing when there was none.
std::optional<std::wstring> TextThere(const Value& value) {
  const Key key = Open(value.key, KEY_QUERY_VALUE);
  DWORD bytes = 0;
  const auto read = [&](wchar_t* text) {
    return RegGetValueW(key.get(), nullptr, value.name, RRF_RT_REG_SZ, nullptr, text, &bytes) ==
           ERROR_SUCCESS;
  };
  if (!key || !read(nullptr)) return {};
  std::wstring text(bytes / sizeof(wchar_t), L'\0');
  if (!read(text.data())) return {};
  text.resize(bytes / sizeof(wchar_t) - 1);  // it counts the zero at its end
  return text;
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

/// Writes values, and takes all back when it goes before `Keep`.
class Transaction : private host::NonCopyable {
 public:
  ~Transaction() {
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
      static_cast<void>(com::Guarded(IID_NULL, [&] { TakeBack(*step); }));
    }
  }

  void Set(const Value& value) {
    const std::wstring top = value.key.substr(0, TopLength(value.key));
    steps_.push_back({value, TextThere(value), Open(top, KEY_QUERY_VALUE) ? L"" : top});
    Write(value);
  }
  void Keep() { steps_.clear(); }

 private:
  struct Step {
    Value value;
    std::optional<std::wstring> before;
    std::wstring made;  ///< the class's whole key, when it was not there
  };
  /// A class's own key: the ProgID, or what follows CLSID.
  [[nodiscard]] static std::size_t TopLength(const std::wstring& key) {
    const std::size_t first = key.find(L'\\');
    return key.starts_with(L"CLSID\\") ? key.find(L'\\', first + 1) : first;
  }
  static void TakeBack(const Step& step) {
    if (!step.made.empty()) return DeleteTree(step.made);
    if (step.before) return Write({step.value.key, step.value.name, *step.before});
    const Key key = Open(step.value.key, KEY_SET_VALUE);
    if (key) RegDeleteValueW(key.get(), step.value.name);
  }

  std::vector<Step> steps_;
};

/// Whether the type library is registered, with whatever file.
bool IsRegistered(ITypeLib& library) {
  com::Bstr file;
  return SUCCEEDED(QueryPathOfRegTypeLib(LibraryId(library), 1, 0, LOCALE_NEUTRAL, file.Put()));
}

void DeleteTypeLibrary() {
  constexpr SYSKIND kKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  const GUID guid = LibraryId(*com::TypeLibraryOf(kComponentLibrary).Get());
  const HRESULT result = UnRegisterTypeLib(guid, 1, 0, LOCALE_NEUTRAL, kKind);
  // Both say that there is no entry any more.
  if (result != TYPE_E_REGISTRYACCESS && result != E_INVALIDARG) com::Check(result);
}

/// The class is registered for programs of the other size, 32 or 64 bits, as well.
bool OtherSizeHas(const ClassEntry& entry) {
  constexpr REGSAM kOther = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
  return Open(ClassKey(entry) + L"\\InprocServer32", KEY_QUERY_VALUE | kOther) != nullptr;
}

void WriteAll() {
  const auto library = com::TypeLibraryOf(kComponentLibrary);
  const std::wstring library_id = TextOfGuid(LibraryId(*library.Get()));
  Transaction classes;
  for (const ClassEntry& entry : AllClasses()) {
    for (const Value& value : ValuesOf(entry, library_id)) classes.Set(value);
  }
  // Last: the system has no way to take a part of it back.
  const bool was_registered = IsRegistered(*library.Get());
  std::wstring file = com::ThisModuleFile();
  const HRESULT result = RegisterTypeLib(library.Get(), file.data(), nullptr);
  if (FAILED(result) && !was_registered) {
    static_cast<void>(com::Guarded(IID_NULL, [] { DeleteTypeLibrary(); }));
  }
  if (FAILED(result)) throw com::ComFailure(SELFREG_E_TYPELIB);
  classes.Keep();
}

}  // namespace

HRESULT Register() noexcept {
  const HRESULT result = com::Guarded(IID_NULL, [] { WriteAll(); });
  return SUCCEEDED(result) || result == SELFREG_E_TYPELIB ? result : SELFREG_E_CLASS;
}

HRESULT Unregister() noexcept {
  // Each part is tried whatever becomes of the others; the first failure is told.
  const bool library_gone = SUCCEEDED(com::Guarded(IID_NULL, [] { DeleteTypeLibrary(); }));
  HRESULT first = library_gone ? S_OK : SELFREG_E_TYPELIB;
  const auto remove = [&](const std::wstring& key) {
    const HRESULT result = com::Guarded(IID_NULL, [&] { DeleteTree(key); });
    if (SUCCEEDED(first) && FAILED(result)) first = SELFREG_E_CLASS;
  };
  for (const ClassEntry& entry : AllClasses()) {
    remove(ClassKey(entry));
    if (!OtherSizeHas(entry)) remove(entry.prog_id);
  }
  return first;
}

}  // namespace tavrix::component
