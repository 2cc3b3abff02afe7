#pragma once

#include <string>
#include <string_view>

#include "viewkit/grid/grid_types.h"

namespace tavrix::viewkit {

/// How a cell of a data row shows its text in a column of this type and format. A text that is no
/// value of the type is shown as it is.
[[nodiscard]] std::string DisplayOf(std::string_view text, ColumnType type,
                                    const std::string& format);

}  // namespace tavrix::viewkit
