#pragma once

#include <windows.h>

namespace qv::host {

// The console of the program that started this one, for a program that has none itself: while this
// lives, standard output and error go there, as UTF-8. Where both were led elsewhere by whoever
// started the program, they stay as they are.
class CallingConsole {
 public:
  CallingConsole();
  ~CallingConsole();
  CallingConsole(const CallingConsole&) = delete;
  CallingConsole& operator=(const CallingConsole&) = delete;

  // Whether there is something to write to.
  bool usable() const { return redirected_ || attached_; }

 private:
  bool redirected_ = false;
  bool attached_ = false;
  UINT codePageBefore_ = 0;
};

}  // namespace qv::host
