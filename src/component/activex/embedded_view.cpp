#include "component/activex/embedded_view.h"

namespace tavrix::component {

EmbeddedView::EmbeddedView()
    : user_({.owner = [this]() -> HWND { return hooks_.owner ? hooks_.owner() : nullptr; },
             .modal =
                 [this](bool open) {
                   if (hooks_.modal) hooks_.modal(open);
                 }}) {}

}  // namespace tavrix::component
