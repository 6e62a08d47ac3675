#pragma once

#include <wx/gdicmn.h>
#include <wx/toplevel.h>

namespace qv {

// Brings a top-level window to its place: the part of that which depends on the windowing system.
// This is the one for Win32, which puts windows where they are told to be.
class WindowPlace {
 public:
  explicit WindowPlace(wxTopLevelWindow& window) : window_(window) {}

  // `normal` is where the window lies, or goes back to if it is maximised.
  void Put(const wxRect& normal, bool maximized);
  // False until the window is, or is about to be, where it was put.
  static constexpr bool IsReached() { return true; }

 private:
  wxTopLevelWindow& window_;
};

}  // namespace qv
