#pragma once

#include <windows.h>

#include <unknwn.h>

#include <span>

#include "com/com_ptr.h"

namespace tavrix::component {

/// A class that the library creates.
struct ClassEntry {
  const CLSID* clsid;
  const wchar_t* prog_id;
  const wchar_t* description;
  bool control;  ///< can be placed in a container
  com::ComPtr<IUnknown> (*create)(IUnknown* outer);
};

/// All classes of the library.
[[nodiscard]] std::span<const ClassEntry> AllClasses();

}  // namespace tavrix::component
