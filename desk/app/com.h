#pragma once

#include "com/com_object.h"
#include "com/com_ptr.h"
#include "com/values.h"
#include "com/variant.h"

/// What the program takes from the COM toolkit in many places.
namespace desk::app {

using tavrix::com::ComPtr;
using tavrix::com::Make;
using tavrix::com::Query;
using tavrix::com::TextOf;
using tavrix::com::Variant;

}  // namespace desk::app
