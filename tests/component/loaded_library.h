#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <string_view>
#include <vector>

#include "com/com_ptr.h"
#include "host/non_copyable.h"

namespace tavrix::test {

using com::ComPtr;

/// A `Kjkm`, activated by its class identifier.
[[nodiscard]] ComPtr<IUnknown> CreateView();

/// A control inside a view, by its name.
[[nodiscard]] ComPtr<IDispatch> ChildOf(const ComPtr<IUnknown>& view, std::string_view name);

/// The library, loaded for its entry points; kept loaded as long as this lives.
class LoadedLibrary : private host::NonCopyable {
 public:
  LoadedLibrary();
  ~LoadedLibrary() { FreeLibrary(module_); }

  [[nodiscard]] std::wstring File() const;
  /// Names of what it exports, in the order of the table.
  [[nodiscard]] std::vector<std::string> Exports() const;
  /// Names of the libraries that it needs.
  [[nodiscard]] std::vector<std::string> Imports() const;

  [[nodiscard]] HRESULT CanUnloadNow() const;
  [[nodiscard]] HRESULT Register() const;
  [[nodiscard]] HRESULT Unregister() const;
  [[nodiscard]] HRESULT ClassObject(const CLSID& clsid, const IID& iid, void** result) const;

 private:
  template <class Function>
  [[nodiscard]] Function* Entry(const char* name) const;
  [[nodiscard]] const IMAGE_DATA_DIRECTORY& Directory(int which) const;
  template <class Part>
  [[nodiscard]] const Part* At(DWORD offset) const {
    return reinterpret_cast<const Part*>(reinterpret_cast<const char*>(module_) + offset);
  }

  HMODULE module_;
};

}  // namespace tavrix::test
