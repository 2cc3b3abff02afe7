#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <string_view>
#include <vector>

#include "com/com_ptr.h"
#include "component/controls/model_reference.h"
#include "viewkit/control.h"

namespace tavrix::component {

/// The objects that callers see for the controls of one view: one for each control, made when it
/// is first asked for and the same ever after. They do not keep the view alive. Parts that are no
/// controls for callers, such as a splitter, are left out.
class ChildObjects : public std::enable_shared_from_this<ChildObjects> {
 public:
  /// The list lives as long as the view does, whose life `controls` shares. A member of the objects
  /// that is called keeps the view's `owner` until it has ended.
  ChildObjects(const std::shared_ptr<viewkit::ControlList>& controls,
               std::shared_ptr<const ViewOwner> owner);

  [[nodiscard]] std::size_t Count() const { return children_.size(); }
  /// `position` counts from 0. Throws `ComFailure` outside, or when the view is gone.
  [[nodiscard]] com::ComPtr<IDispatch> At(std::size_t position);
  /// By name without regard to case; a member of a control array carries its index, as "Vs(2)".
  [[nodiscard]] com::ComPtr<IDispatch> Find(std::string_view name);
  /// Null when the control is none of the view's.
  [[nodiscard]] com::ComPtr<IDispatch> Of(const host::Control& control);
  /// The collection as callers see it: the same as long as anyone holds it.
  [[nodiscard]] com::ComPtr<IDispatch> Collection();

 private:
  [[nodiscard]] std::shared_ptr<viewkit::ControlList> Controls() const;

  struct Child {
    viewkit::Control* control;
    com::ComPtr<IDispatch> object;
  };
  std::weak_ptr<viewkit::ControlList> controls_;
  std::shared_ptr<const ViewOwner> owner_;
  std::vector<Child> children_;
};

}  // namespace tavrix::component
