#include "app/LogHistory.h"

#include <utility>

namespace qv {

LogHistory& LogHistory::Shared() {
  // Never destroyed: threads may log until the very end.
  static auto* const history = new LogHistory;
  return *history;
}

void LogHistory::Add(Line line) {
  {
    const std::lock_guard lock(mutex_);
    if (lines_.size() == kMostLines) lines_.pop_front();
    lines_.push_back(std::move(line));
  }
  const std::lock_guard lock(watchMutex_);
  if (changed_) changed_();
}

std::vector<LogHistory::Line> LogHistory::Lines() const {
  const std::lock_guard lock(mutex_);
  return {lines_.begin(), lines_.end()};
}

void LogHistory::Clear() {
  {
    const std::lock_guard lock(mutex_);
    lines_.clear();
  }
  const std::lock_guard lock(watchMutex_);
  if (changed_) changed_();
}

void LogHistory::Watch(std::function<void()> changed) {
  const std::lock_guard lock(watchMutex_);
  changed_ = std::move(changed);
}

const char* NameOf(LogLevel level) {
  switch (level) {
    case LogLevel::kInfo:
      return "info";
    case LogLevel::kWarning:
      return "warning";
    case LogLevel::kError:
      return "error";
  }
  return "";
}

}  // namespace qv
