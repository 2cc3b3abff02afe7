#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <memory>

#include "com/com_ptr.h"
#include "component/view_owner.h"
#include "host/objects.h"

namespace tavrix::component {

/// The object that callers see for a grid of the view; null when it has none.
using GridObjects = std::function<com::ComPtr<IDispatch>(host::Grid&)>;

using SharedOwner = std::shared_ptr<const ViewOwner>;

/// The view that the host's objects serve.
struct ServedView {
  GridObjects grids;
  SharedOwner owner;
};

/// The host's system object, whatever language it is written in, as the library knows it. Null
/// gives null. The objects it gives out are adapted alike and keep their own references.
[[nodiscard]] std::shared_ptr<host::SystemObject> AdaptSystem(const com::ComPtr<IDispatch>& object,
                                                              ServedView view);

/// A parameter collection of the host; null gives null.
[[nodiscard]] std::shared_ptr<host::Parameters> AdaptParameters(
    const com::ComPtr<IDispatch>& object, SharedOwner owner);
/// The host's object behind an adapted collection; null when it is none.
[[nodiscard]] com::ComPtr<IDispatch> DispatchOf(
    const std::shared_ptr<host::Parameters>& parameters);

}  // namespace tavrix::component
