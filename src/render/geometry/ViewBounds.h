#pragma once

#include "core/Vec.h"

namespace qv {

// The box around the model. The maximum starts at the smallest positive float, so a model that lies
// entirely below zero on an axis reports that value as its maximum there.
struct ViewBounds {
  Vec3 minimum;
  Vec3 maximum;
};

}  // namespace qv
