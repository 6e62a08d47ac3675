#pragma once

namespace qv::platform {

// Puts the calling thread one step below the normal priority, so that windows stay responsive while
// all processors trace. Failure is ignored.
void LowerCurrentThreadPriority();

}  // namespace qv::platform
