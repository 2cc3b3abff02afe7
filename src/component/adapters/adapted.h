#pragma once

#include <memory>

#include "com/late_object.h"
#include "qnSystem.h"

namespace tavrix::component {

/// An interface of the library on an Automation object of the host, whose interface in `qnSystem`
/// is `Declared`.
template <class Interface, class Declared>
class Adapted : public Interface {
 public:
  explicit Adapted(com::ComPtr<IDispatch> object)
      : object_(std::move(object), __uuidof(Declared)) {}
  [[nodiscard]] const com::LateObject& Object() const { return object_; }

 private:
  com::LateObject object_;
};

/// `object` as an `Adapter`; null for null.
template <class Adapter, class... Arguments>
[[nodiscard]] std::shared_ptr<Adapter> Adapt(const com::ComPtr<IDispatch>& object,
                                             Arguments&&... arguments) {
  if (!object) return nullptr;
  return std::make_shared<Adapter>(object, std::forward<Arguments>(arguments)...);
}

}  // namespace tavrix::component
