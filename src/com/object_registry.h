#pragma once

#include <memory>
#include <mutex>
#include <unordered_map>

#include "com/com_object.h"
#include "com/com_ptr.h"
#include "host/non_copyable.h"

namespace tavrix::com {

/// Which object stands for a model, so that a model never has two: objects are compared by
/// identity. An object that outlives its model must not be given for another model at the same
/// address.
template <class Object>
class ObjectRegistry : private host::NonCopyable {
 public:
  /// The latest object of a model that has one; null else.
  [[nodiscard]] static Object* Find(const void* model) {
    const std::lock_guard lock(Mutex());
    const auto found = Objects().find(model);
    return found == Objects().end() ? nullptr : found->second;
  }

  /// An entry, as a member of the object.
  ObjectRegistry(const void* model, Object& object) : model_(model), object_(object) {
    const std::lock_guard lock(Mutex());
    Objects()[model_] = &object;
  }
  ~ObjectRegistry() {
    const std::lock_guard lock(Mutex());
    const auto found = Objects().find(model_);
    if (found != Objects().end() && found->second == &object_) Objects().erase(found);
  }

 private:
  static std::mutex& Mutex() {
    static std::mutex mutex;
    return mutex;
  }
  static std::unordered_map<const void*, Object*>& Objects() {
    static std::unordered_map<const void*, Object*> objects;
    return objects;
  }

  const void* model_;
  Object& object_;
};

/// The object that stands for `model`: the one there is, or a new one. Null for null.
template <class Object, class Interface, class Model>
[[nodiscard]] ComPtr<Interface> ObjectFor(const std::shared_ptr<Model>& model) {
  if (!model) return nullptr;
  if (auto* object = ObjectRegistry<Object>::Find(model.get())) return ComPtr<Interface>(object);
  return MakeObject<Object>(nullptr, model).template As<Interface>();
}

}  // namespace tavrix::com
