#pragma once

namespace qv {

// Sends the library's log to our own, so that none of its messages ever comes up as a dialog. The
// library forgets this when the application object stands, so it is called before and after.
void RouteLibraryLog();

// Writes the log to standard error, one line a message with the seconds since the start in front:
// warnings and errors, or more or less if the environment variable QUORVANE_LOG says "info" or
// "error". Where QUORVANE_LOG_FILE names a file, the log is added to that instead.
void StartLog();

}  // namespace qv
