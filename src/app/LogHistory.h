#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "core/Log.h"

namespace qv {

// The newest lines of the log, for those who look at it later. Any thread.
class LogHistory {
 public:
  struct Line {
    double seconds = 0;  // since the start of the program
    LogLevel level = LogLevel::kInfo;
    std::string text;  // UTF-8
  };
  static constexpr std::size_t kMostLines = 5000;

  // That of this program.
  static LogHistory& Shared();

  void Add(Line line);
  std::vector<Line> Lines() const;
  void Clear();
  // Has `changed` called after each change, on the thread that makes it; empty for nobody. When
  // this returns no call of the one before runs any more.
  void Watch(std::function<void()> changed);

 private:
  mutable std::mutex mutex_;
  std::deque<Line> lines_;
  std::mutex watchMutex_;
  std::function<void()> changed_;
};

// "info", "warning" or "error".
const char* NameOf(LogLevel level);

}  // namespace qv
