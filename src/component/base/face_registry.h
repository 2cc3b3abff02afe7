#pragma once

#include <mutex>
#include <unordered_map>

namespace tavrix::component {

/// Which face stands for a model, so that a model never has two: objects are compared by identity.
/// A face that outlives its model must not be given for another model at the same address.
template <class Face>
class FaceRegistry {
 public:
  /// The latest face of a model that has one; null else.
  [[nodiscard]] static Face* Find(const void* model) {
    const std::lock_guard lock(Mutex());
    const auto found = Faces().find(model);
    return found == Faces().end() ? nullptr : found->second;
  }

  /// An entry, as a member of the face.
  FaceRegistry(const void* model, Face& face) : model_(model), face_(face) {
    const std::lock_guard lock(Mutex());
    Faces()[model_] = &face;
  }
  FaceRegistry(const FaceRegistry&) = delete;
  FaceRegistry& operator=(const FaceRegistry&) = delete;
  ~FaceRegistry() {
    const std::lock_guard lock(Mutex());
    const auto found = Faces().find(model_);
    if (found != Faces().end() && found->second == &face_) Faces().erase(found);
  }

 private:
  static std::mutex& Mutex() {
    static std::mutex mutex;
    return mutex;
  }
  static std::unordered_map<const void*, Face*>& Faces() {
    static std::unordered_map<const void*, Face*> faces;
    return faces;
  }

  const void* model_;
  Face& face_;
};

}  // namespace tavrix::component
