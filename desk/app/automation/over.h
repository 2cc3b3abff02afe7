#pragma once

#include <memory>
#include <utility>

#include "com/dispatch_object.h"

namespace desk::app {

/// An Automation object over a portable one, which it shares: the members of `Dual`, and of further
/// interfaces, are its class's to override.
template <class Object, class Dual, class... Others>
class Over : public tavrix::com::DispatchObject<Dual, Others...> {
 public:
  explicit Over(std::shared_ptr<Object> object) : object_(std::move(object)) {}

 protected:
  [[nodiscard]] Object& Own() const { return *object_; }
  [[nodiscard]] const std::shared_ptr<Object>& Shared() const { return object_; }

 private:
  std::shared_ptr<Object> object_;
};

}  // namespace desk::app
