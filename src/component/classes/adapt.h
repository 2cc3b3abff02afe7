#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>

#include "host/objects.h"

namespace tavrix::component {

class ActiveControl;

/// The system object that a host has handed to `Init` by reference; null when it gave none. Its
/// navigator will get the grids of `control`.
[[nodiscard]] std::shared_ptr<host::SystemObject> SystemOf(const ActiveControl& control,
                                                           IDispatch** pcSystem);

}  // namespace tavrix::component
