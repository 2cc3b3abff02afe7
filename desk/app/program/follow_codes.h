#pragma once

#include <map>
#include <string>

#include "app/program/workplace.h"

namespace desk::app {

/// Accounts have got other codes, from the first to the second of each pair: reads the page that is
/// shown again and goes on at their new place, with the account that was selected selected and in
/// view, and the branches open that were. Throws what the view raises.
void FollowCodes(const Workplace& place, const std::map<std::string, std::string>& codes);

}  // namespace desk::app
