#pragma once

#include "host/link/HostLink.h"

namespace qv::e2e {

// A wall that fills the view of QuarterCamera: red at the top left, green at the top right, blue at
// the bottom left, yellow at the bottom right. False if the viewer has gone.
bool SendQuarters(host::HostLink& link);
RenderCamera QuarterCamera();

// A hilly ground of 2 * side * side triangles.
bool SendGround(host::HostLink& link, int side);

}  // namespace qv::e2e
