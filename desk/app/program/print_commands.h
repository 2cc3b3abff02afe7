#pragma once

#include "app/program/workplace.h"
#include "viewkit/input.h"

namespace desk::app {

/// Prints the chart of accounts, after asking for a printer; the preview offers all accounts, those
/// of the page with what is closed, and those that are shown. Throws what the book raises.
void PrintChart(const Workplace& place);
void PreviewChart(const Workplace& place);

/// The keys of both commands in the window of a sheet, whose rows they print: true when it was one.
[[nodiscard]] bool UsePrintKey(const Workplace& place, SheetWindow& sheet, tavrix::viewkit::Key key,
                               tavrix::viewkit::Modifiers modifiers);

}  // namespace desk::app
