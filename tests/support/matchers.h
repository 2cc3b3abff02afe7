#pragma once

#include <gmock/gmock.h>

/// The matchers that tests name most, without their namespace.
namespace tavrix {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

}  // namespace tavrix

namespace desk {

using tavrix::ElementsAre;
using tavrix::HasSubstr;
using tavrix::IsEmpty;
using tavrix::StartsWith;

}  // namespace desk
