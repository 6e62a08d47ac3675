#pragma once

#include "ui/FloatingFrame.h"

namespace qv {

// The window "Log". It is kept, with its layout, and stays hidden: the log goes to standard error.
class LogPanel : public FloatingFrame {
 public:
  explicit LogPanel(wxWindow* parent);
};

}  // namespace qv
