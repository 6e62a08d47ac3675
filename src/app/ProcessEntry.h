#pragma once

namespace qv {

// The process-wide switches that are set before the library is started: no assertion dialogs in the
// field, the log's level, where the log goes.
void PrepareProcess();

}  // namespace qv
