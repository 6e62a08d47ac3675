#pragma once

#include <atomic>

#include "ui/FloatingFrame.h"

namespace qv {

// The window "Log": the newest lines of the program's log, whatever level goes to standard error.
// It fills itself while it is shown; closing hides it.
class LogPanel : public FloatingFrame {
 public:
  explicit LogPanel(wxWindow* parent);
  ~LogPanel() override;

  bool Show(bool show = true) override;

 private:
  class List;

  void Refill();
  void CopyAll();

  List* list_;
  std::atomic<bool> refillPosted_{false};
};

}  // namespace qv
