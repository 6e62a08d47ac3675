#pragma once

#include <mutex>
#include <ostream>
#include <string>

#include "core/RenderCamera.h"
#include "link/IQuorvane.h"

namespace qv::host {

// What the program tells: what it does on one stream, what goes wrong on the other, line by line
// and at once. Any thread.
class Console {
 public:
  Console(std::ostream& output, std::ostream& errors) : output_(output), errors_(errors) {}

  void Tell(const std::string& line);
  // With the program's name before it.
  void Complain(const std::string& line);

 private:
  std::mutex mutex_;
  std::ostream& output_;
  std::ostream& errors_;
};

// "eye X,Y,Z direction X,Y,Z up X,Y,Z fov DEGREES target X,Y,Z"
std::string TextOf(const RenderCamera& view);
// "YYYY-MM-DDTHH:MM:SS"
std::string TimeTextOf(const LocationAndTime& when);

}  // namespace qv::host
