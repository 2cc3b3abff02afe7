#pragma once

#include <memory>

#include "com/com_ptr.h"
#include "component/adapters/host_objects.h"
#include "host/objects.h"

/// The helper objects that a host creates for the library; null gives null.
namespace tavrix::component {

[[nodiscard]] std::shared_ptr<host::CodeRule> AdaptCodeRule(const com::ComPtr<IDispatch>& object);
[[nodiscard]] std::shared_ptr<host::LogHelper> AdaptLogHelper(const com::ComPtr<IDispatch>& object);
[[nodiscard]] std::shared_ptr<host::DataHelper> AdaptDataHelper(
    const com::ComPtr<IDispatch>& object);
[[nodiscard]] std::shared_ptr<host::GridNavigator> AdaptGridNavigator(
    const com::ComPtr<IDispatch>& object, GridObjects grids);
[[nodiscard]] std::shared_ptr<host::SettingsFile> AdaptSettingsFile(
    const com::ComPtr<IDispatch>& object);

}  // namespace tavrix::component
