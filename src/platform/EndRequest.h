#pragma once

namespace qv::platform {

// From here on the system's requests to end (an interrupt from the keyboard, a request to
// terminate, a terminal that closes) no longer end this process but are only noted, except for
// those that the process was started to ignore. Writing to a pipe that nobody reads fails instead
// of ending the process. Called once. On Windows the system kills a process five seconds after some
// of these requests.
void CatchEndRequests();

// 0, or the exit code to end with once a request has come: 128 plus the signal's number (2
// interrupt, 15 terminate, 1 hang-up). The first request counts. Any thread.
int EndRequested();

}  // namespace qv::platform
