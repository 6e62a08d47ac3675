#pragma once

namespace qv::platform {

// Seconds of a steady clock with an arbitrary origin. Any thread.
double NowSeconds();

// Lets the calling thread sleep for at least that long.
void SleepMilliseconds(unsigned milliseconds);

}  // namespace qv::platform
