#pragma once

#include <stdexcept>
#include <string>

#include "core/Vec.h"
#include "link/IQuorvane.h"

namespace qv::host {

// Thrown for an option's value that is none; its text tells what the option takes.
class BadValue : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A finite decimal number, the whole of the text, within the limits.
double NumberFrom(const std::string& text, double least, double greatest);

// "x,y,z".
Vec3 PointFrom(const std::string& text);

// "YYYY-MM-DDTHH:MM" or "YYYY-MM-DDTHH:MM:SS", a date of the calendar from 1583 on.
void TakeTimeFrom(const std::string& text, LocationAndTime& when);

}  // namespace qv::host
