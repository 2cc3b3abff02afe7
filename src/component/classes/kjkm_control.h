#pragma once

#include "component/classes/form_ui.h"
#include "component/classes/view_control.h"
#include "maintenance/kjkm.h"
#include "tavrix.h"

namespace tavrix::component {

/// The class `Kjkm`: the maintenance view as an ActiveX control.
class KjkmControl : public ViewControl<maintenance::Kjkm, _Kjkm, FormUi, IFormUI> {
 public:
  explicit KjkmControl(IUnknown* outer);
};

}  // namespace tavrix::component
