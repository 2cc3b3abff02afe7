#pragma once

#include "host/path.h"

namespace desk::book {

using tavrix::host::PathOf;
using tavrix::host::PathText;

}  // namespace desk::book
