#pragma once

#include <windows.h>

#include <memory>

#include "component/activex/active_control.h"
#include "component/classes/back_color.h"
#include "component/classes/design_ui.h"
#include "component/classes/embedded_view_of.h"

namespace tavrix::component {

/// One of the two views as an ActiveX control. `Default` is its class's interface, `HostUi` the
/// implementation of `HostInterface`, through which the host drives it.
template <class Model, class Default, class HostUi, class HostInterface>
class ViewControl : public ActiveControl {
 protected:
  ViewControl(IUnknown* outer, const ControlFacts& facts)
      : ViewControl(outer, facts, std::make_shared<EmbeddedViewOf<Model>>()) {}
  [[nodiscard]] Model& GetModel() { return model_; }

 private:
  ViewControl(IUnknown* outer, const ControlFacts& facts,
              const std::shared_ptr<EmbeddedViewOf<Model>>& view)
      : ActiveControl(outer, facts, view),
        model_(view->GetModel()),
        back_color_(*this),
        host_ui_(*this, model_),
        design_ui_(*this, model_) {
    AddDualInterface(__uuidof(Default), &back_color_);
    // Before the designer's interface: a caller by name means the picker's `Parameters`.
    AddDualInterface(__uuidof(HostInterface), &host_ui_);
    AddDualInterface(__uuidof(IDesignUI), &design_ui_);
  }

  Model& model_;
  BackColorImpl<Default> back_color_;
  HostUi host_ui_;
  DesignUi design_ui_;
};

}  // namespace tavrix::component
