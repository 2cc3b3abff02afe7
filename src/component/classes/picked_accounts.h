#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>

#include "com/com_ptr.h"
#include "picker/col_kjkm.h"
#include "tavrix.h"

namespace tavrix::component {

/// The object that callers see for a collection of picked accounts, or for one of them: the same
/// one for the same collection as long as anyone holds it. Null gives null.
[[nodiscard]] com::ComPtr<_colKjkm> PickedAccountsObject(
    const std::shared_ptr<picker::colKjkm>& accounts);
[[nodiscard]] com::ComPtr<_clsKjkm> PickedAccountObject(
    const std::shared_ptr<picker::clsKjkm>& account);

}  // namespace tavrix::component
