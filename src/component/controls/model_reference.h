#pragma once

#include <memory>
#include <utility>

#include "com/com_ptr.h"
#include "component/view_owner.h"

namespace tavrix::component {

/// A part of a view, which does not keep the view alive until it is used.
template <class Model>
class ModelReference {
 public:
  /// One use: the model, its view and the object around it live at least as long.
  class Use {
   public:
    Use(com::ComPtr<IUnknown> owner, std::shared_ptr<Model> model)
        : owner_(std::move(owner)), model_(std::move(model)) {}
    explicit operator bool() const { return model_ != nullptr; }
    Model& operator*() const { return *model_; }

   private:
    com::ComPtr<IUnknown> owner_;  // goes last
    std::shared_ptr<Model> model_;
  };

  ModelReference(const std::shared_ptr<Model>& model, std::shared_ptr<const ViewOwner> owner)
      : model_(model), owner_(std::move(owner)) {}
  /// Nothing once the view is gone.
  [[nodiscard]] Use Lock() const { return {owner_->Keep(), model_.lock()}; }

 private:
  std::weak_ptr<Model> model_;
  std::shared_ptr<const ViewOwner> owner_;
};

}  // namespace tavrix::component
