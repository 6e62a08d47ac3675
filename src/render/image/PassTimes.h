#pragma once

namespace qv {

// How long the passes that a picture shows took, in seconds; 0 for a pass that has no part in it.
struct PassTimes {
  double base = 0;
  double antialias = 0;
};

}  // namespace qv
