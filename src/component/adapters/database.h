#pragma once

#include <memory>

#include "com/com_ptr.h"
#include "host/objects.h"

namespace tavrix::component {

/// A database object of the host with its statements and recordsets; null gives null.
[[nodiscard]] std::shared_ptr<host::Database> AdaptDatabase(const com::ComPtr<IDispatch>& object);
/// The host's object behind an adapted database; null when it is none.
[[nodiscard]] com::ComPtr<IDispatch> DispatchOf(const std::shared_ptr<host::Database>& database);

}  // namespace tavrix::component
