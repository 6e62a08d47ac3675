#pragma once

namespace qv::host {

// The international inch, exact since 1959.
inline constexpr double kMetresPerInch = 0.0254;

// Points further out than this, in inches, can't be told apart in floats.
inline constexpr double kFarthestPoint = 1e7;

}  // namespace qv::host
