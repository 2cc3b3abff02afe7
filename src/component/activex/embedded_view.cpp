#include "component/activex/embedded_view.h"

namespace tavrix::component {

EmbeddedView::EmbeddedView()
    // The hooks may be taken away while they are at work.
    : user_({.owner = [this]() -> HWND {
               const auto owner = hooks_.owner;
               return owner ? owner() : nullptr;
             },
             .modal =
                 [this](bool open) {
                   const auto modal = hooks_.modal;
                   if (modal) modal(open);
                 }}) {}

}  // namespace tavrix::component
