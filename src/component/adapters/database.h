#pragma once

#include <memory>

#include "component/base/com_ptr.h"
#include "host/objects.h"

namespace tavrix::component {

/// A database object of the host with its statements and recordsets; null gives null.
[[nodiscard]] std::shared_ptr<host::Database> AdaptDatabase(const ComPtr<IDispatch>& object);
/// The host's object behind an adapted database; null when it is none.
[[nodiscard]] ComPtr<IDispatch> DispatchOf(const std::shared_ptr<host::Database>& database);

}  // namespace tavrix::component
