#pragma once

#include <memory>

#include "component/adapters/host_objects.h"
#include "component/base/com_ptr.h"
#include "host/objects.h"

/// The helper objects that a host creates for the library; null gives null.
namespace tavrix::component {

[[nodiscard]] std::shared_ptr<host::CodeRule> AdaptCodeRule(const ComPtr<IDispatch>& object);
[[nodiscard]] std::shared_ptr<host::LogHelper> AdaptLogHelper(const ComPtr<IDispatch>& object);
[[nodiscard]] std::shared_ptr<host::DataHelper> AdaptDataHelper(const ComPtr<IDispatch>& object);
[[nodiscard]] std::shared_ptr<host::GridNavigator> AdaptGridNavigator(
    const ComPtr<IDispatch>& object, GridObjects grids);
[[nodiscard]] std::shared_ptr<host::SettingsFile> AdaptSettingsFile(
    const ComPtr<IDispatch>& object);

}  // namespace tavrix::component
