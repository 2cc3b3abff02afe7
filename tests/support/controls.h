#pragma once

#include <stdexcept>
#include <string>

#include "host/controls.h"

namespace tavrix::test {

/// The control of a view or dialog as a user finds it: by its name and, among several of one name,
/// its index. Throws when there is none.
template <class Kind, class Owner>
[[nodiscard]] Kind& Find(Owner& owner, const std::string& name, int index = 0) {
  const host::ControlCollection& controls = owner.Controls();
  for (std::size_t i = 0; i < controls.Count(); ++i) {
    host::Control& control = controls.At(i);
    if (control.Name() == name && control.Index().value_or(0) == index)
      return dynamic_cast<Kind&>(control);
  }
  throw std::out_of_range(name);
}

}  // namespace tavrix::test

namespace desk {

using tavrix::test::Find;

}  // namespace desk
