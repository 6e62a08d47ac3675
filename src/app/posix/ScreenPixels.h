#pragma once

#include <cstddef>
#include <cstdint>

#include "render/RaytraceImpl.h"

namespace qv {

// Writes the picture top row first, each pixel one native word 0xFFrrggbb, rows `stride` bytes
// apart.
void ExpandPicture(const ScreenView& picture, std::uint8_t* out, std::size_t stride);

}  // namespace qv
