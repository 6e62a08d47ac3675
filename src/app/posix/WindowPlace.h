#pragma once

#include <wx/gdicmn.h>
#include <wx/timer.h>
#include <wx/toplevel.h>
#include <wx/weakref.h>

namespace qv {

// Brings a top-level window to its place: the part of that which depends on the windowing system.
// This is the one for systems with window managers. They put a new window where they like, and
// not always at the size that was asked for.
class WindowPlace {
 public:
  explicit WindowPlace(wxTopLevelWindow& window);
  ~WindowPlace();
  WindowPlace(const WindowPlace&) = delete;
  WindowPlace& operator=(const WindowPlace&) = delete;

  // `normal` is where the window lies, or goes back to if it is maximised.
  void Put(const wxRect& normal, bool maximized);
  // False until the window is, or is about to be, where it was put.
  bool IsReached() const { return reached_; }

 private:
  void OnShow(wxShowEvent& event);
  void OnSize(wxSizeEvent& event);
  void PutAgain();

  wxWeakRef<wxTopLevelWindow> window_;
  wxRect normal_;
  bool reached_ = true;
  wxTimer settled_;
};

}  // namespace qv
