#pragma once

#include <algorithm>

#include "render/trace/RayPacket.h"

namespace qv {

inline void Fill(LaneInts& lanes, std::int32_t value) {
  std::fill_n(lanes, kLanes, value);
}
inline void Fill(LaneFloats& lanes, float value) {
  std::fill_n(lanes, kLanes, value);
}
inline void Fill(LaneFloats (&lanes)[3], float value) {
  for (auto& channel : lanes) Fill(channel, value);
}
inline void Copy(const LaneInts& from, LaneInts& to) {
  std::copy_n(from, kLanes, to);
}
inline void Copy(const LaneFloats& from, LaneFloats& to) {
  std::copy_n(from, kLanes, to);
}
inline void Copy(const LaneFloats (&from)[3], LaneFloats (&to)[3]) {
  for (int i = 0; i < 3; ++i) Copy(from[i], to[i]);
}

}  // namespace qv
