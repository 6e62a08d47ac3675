#pragma once

#include <wx/eventfilter.h>

namespace qv {

// Notes that Escape is pressed in any window of the program, for as long as it lives. The windows
// get the key all the same. GUI thread only.
class EscapeWatch : public wxEventFilter {
 public:
  EscapeWatch();
  ~EscapeWatch() override;
  EscapeWatch(const EscapeWatch&) = delete;
  EscapeWatch& operator=(const EscapeWatch&) = delete;

  bool Pressed() const { return pressed_; }

 private:
  int FilterEvent(wxEvent& event) override;

  bool pressed_ = false;
};

}  // namespace qv
