#include "core/Log.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace qv {
namespace {

std::mutex sinkMutex;
std::function<void(LogLevel, const std::string&)> sink;

const char* NameOf(LogLevel level) {
  switch (level) {
    case LogLevel::kWarning:
      return "warning: ";
    case LogLevel::kError:
      return "error: ";
    case LogLevel::kInfo:
      break;
  }
  return "";
}

}  // namespace

void Log(LogLevel level, const std::string& text) {
  const std::lock_guard lock(sinkMutex);
  if (sink) {
    sink(level, text);
  } else {
    std::fprintf(stderr, "%s%s\n", NameOf(level), text.c_str());
  }
}

void SetLogSink(std::function<void(LogLevel, const std::string&)> newSink) {
  const std::lock_guard lock(sinkMutex);
  sink = std::move(newSink);
}

}  // namespace qv
