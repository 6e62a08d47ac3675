#pragma once

#include <optional>
#include <string>

#include "link/IQuorvane.h"

namespace qv::host {

// Takes over a date and a time of day, "YYYY-MM-DDTHH:MM" or "YYYY-MM-DDTHH:MM:SS", that the
// calendar has, from 1583 on. Of any other text it tells what is wanted instead.
std::optional<std::string> TakeTime(const std::string& text, LocationAndTime& when);

}  // namespace qv::host
