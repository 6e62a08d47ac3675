#pragma once

#include <windows.h>

namespace qv::host {

// The console of the program that started this one, for a program that has none itself: while this
// lives, standard output and error go there, as UTF-8; the one that was led elsewhere by whoever
// started the program stays as it is.
class CallingConsole {
 public:
  CallingConsole();
  ~CallingConsole();
  CallingConsole(const CallingConsole&) = delete;
  CallingConsole& operator=(const CallingConsole&) = delete;

  // Whether there is something to write to.
  bool usable() const { return usable_; }

 private:
  bool usable_ = false;
  UINT codePageBefore_ = 0;
};

}  // namespace qv::host
