#pragma once

#include "host/link/HostLink.h"

namespace qv::e2e {

// A wall that fills the view of QuarterCamera: red at the top left, green at the top right, blue at
// the bottom left, yellow at the bottom right. False if the viewer has gone.
bool SendQuarters(host::HostLink& link);
RenderCamera QuarterCamera();

// A place to walk on: green ground at z = 0 for y from kLedge to the red wall at y = kWall, and
// blue ground at z = kLowGround below and beyond it. It fills the view of YardCamera.
constexpr float kWall = 200;
constexpr float kLedge = -100;
constexpr float kLowGround = -120;
bool SendYard(host::HostLink& link);
// 70 above the ground at x = 0 and that y, towards the wall.
RenderCamera YardCamera(float y);

// A hilly ground of 2 * side * side triangles.
bool SendGround(host::HostLink& link, int side);

}  // namespace qv::e2e
