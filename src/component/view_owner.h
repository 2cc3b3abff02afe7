#pragma once

#include <windows.h>

#include <unknwn.h>

#include "com/com_ptr.h"

namespace tavrix::component {

/// The object that a view belongs to, for those who may outlive it. Its thread's alone.
class ViewOwner {
 public:
  explicit ViewOwner(IUnknown& object) : object_(&object) {}
  /// Keeps the object while its view is at work; null once it has ended.
  [[nodiscard]] com::ComPtr<IUnknown> Keep() const { return com::ComPtr<IUnknown>(object_); }
  [[nodiscard]] bool Ended() const { return object_ == nullptr; }
  void End() { object_ = nullptr; }

 private:
  IUnknown* object_;
};

}  // namespace tavrix::component
