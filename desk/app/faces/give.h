#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <utility>

#include "app/com/object.h"
#include "app/com/values.h"
#include "host/error.h"

namespace desk::app {

using tavrix::component::Flag;

/// A new face as an IDispatch that the caller owns. A missing object gives a null.
template <class Face, class Object, class... Args>
[[nodiscard]] IDispatch* NewFace(const std::shared_ptr<Object>& object, Args&&... args) {
  if (!object) return nullptr;
  return MakeObject<Face>(object, std::forward<Args>(args)...).Detach();
}

}  // namespace desk::app
