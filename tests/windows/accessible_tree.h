#pragma once

#include <windows.h>

#include <oleacc.h>

#include <string>
#include <vector>

#include "com/com_ptr.h"

/// Windows as an assistive program sees them: through the system's own calls alone.
namespace tavrix::test {

using com::ComPtr;

/// An element: an object, or a number that an object answers for.
struct Element {
  ComPtr<IAccessible> object;
  LONG child = CHILDID_SELF;

  [[nodiscard]] std::string Name() const;
  [[nodiscard]] std::string Value() const;
  [[nodiscard]] std::string Action() const;
  [[nodiscard]] LONG Role() const;
  [[nodiscard]] LONG State() const;
  /// In pixels of the screen; empty when it is not seen.
  [[nodiscard]] RECT Place() const;
  /// What `accNavigate` leads to; without an object for nothing.
  [[nodiscard]] Element Go(LONG direction) const;
  [[nodiscard]] std::vector<Element> Children() const;
  [[nodiscard]] HRESULT DoDefaultAction() const;
  [[nodiscard]] HRESULT Select(LONG flags) const;
  /// Role, name, value and states as a screen reader might speak them.
  [[nodiscard]] std::string Spoken() const;
  /// What UI Automation takes it, and what is in it, for: by the system's bridge for objects such
  /// as ours.
  [[nodiscard]] LONG ControlType() const;
  [[nodiscard]] std::vector<LONG> ControlTypesInside() const;
};

/// What `value`, given by `object`, stands for.
[[nodiscard]] Element ElementOf(const ComPtr<IAccessible>& object, const VARIANT& value);
/// The client area of a window.
[[nodiscard]] Element ClientOf(HWND window);
/// The element and all in it, a line for each, indented by depth; child windows by their client
/// areas.
[[nodiscard]] std::string TreeOf(const Element& element, int depth = 0);

}  // namespace tavrix::test
