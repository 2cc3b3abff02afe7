#pragma once

#include "app/controls/kjkm_view.h"
#include "host/objects.h"
#include "viewkit/ports.h"

namespace desk::app {

/// Makes the names' column of each page as wide as the longest name, as far as the view has room
/// beside its other columns. A width that the user has set, which the layout file keeps, stays;
/// beside it the file holds the width that was given here.
void FitNameColumns(KjkmView& view, tavrix::host::SystemObject& system,
                    const tavrix::viewkit::TextMeasure& measure);

}  // namespace desk::app
