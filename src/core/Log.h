#pragma once

#include <functional>
#include <string>

namespace qv {

enum class LogLevel { kInfo, kWarning, kError };

// Tells one line to the log. Any thread. Before a sink is installed lines go to standard error.
void Log(LogLevel level, const std::string& text);

// Replaces the place that lines go to; an empty function brings standard error back. The sink may
// be called from any thread, one line at a time.
void SetLogSink(std::function<void(LogLevel, const std::string&)> sink);

}  // namespace qv
