#include "component/classes/adapt.h"

#include "component/activex/active_control.h"
#include "component/adapters/host_objects.h"

namespace tavrix::component {

std::shared_ptr<host::SystemObject> SystemOf(const ActiveControl& control, IDispatch** pcSystem) {
  if (pcSystem == nullptr || *pcSystem == nullptr) return nullptr;
  GridObjects grids = [children = control.ChildrenReference()](host::Grid& grid) {
    const auto alive = children.lock();
    return alive ? alive->Of(grid) : nullptr;
  };
  return AdaptSystem(com::ComPtr<IDispatch>(*pcSystem), {std::move(grids), control.Owner()});
}

}  // namespace tavrix::component
