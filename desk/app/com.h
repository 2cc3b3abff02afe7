#pragma once

#include "com/bstr.h"
#include "com/com_object.h"
#include "com/com_ptr.h"
#include "com/failure.h"
#include "com/values.h"
#include "com/variant.h"

/// What the program takes from the COM toolkit in many places.
namespace desk::app {

using tavrix::com::Bstr;
using tavrix::com::Check;
using tavrix::com::CheckCall;
using tavrix::com::ComFailure;
using tavrix::com::ComPtr;
using tavrix::com::Make;
using tavrix::com::Query;
using tavrix::com::TextOf;
using tavrix::com::Variant;
using tavrix::com::ViewOf;

}  // namespace desk::app
