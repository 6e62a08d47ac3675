#pragma once

#include <wx/confbase.h>
#include <wx/gdicmn.h>
#include <wx/toplevel.h>
#include <wx/weakref.h>

#include <functional>
#include <optional>

#include "WindowPlace.h"

namespace qv {

// How a window comes up where the settings store tells nothing, or nothing that can be used.
struct LayoutDefaults {
  wxRect rect;
  wxSize minimum;
  bool visible = false;
};

// Where and how a window is put.
struct LayoutPlan {
  wxRect rect;
  std::optional<bool> visible;  // nothing: as it is
  bool maximized = false;
};

// What the store holds under `prefix`, such as "/Layouts/MainView/". A position on none of the
// displays, which may have been taken away since, gives the default rectangle and leaves the
// visibility; a width or height below the minimum gives the minimum of both.
LayoutPlan PlanLayout(const wxConfigBase& settings, const wxString& prefix,
                      const LayoutDefaults& defaults,
                      const std::function<bool(const wxPoint&)>& isOnDisplay);

// The counterpart. The vertical position is written as "Posy" and read as "PosY": the store makes
// no difference.
void StoreLayout(wxConfigBase& settings, const wxString& prefix, const wxRect& rect, bool visible,
                 bool maximized);

// Keeps position, size and visibility of a top-level window from one run to the next.
class WindowLayout {
 public:
  WindowLayout(wxTopLevelWindow& window, const wxString& prefix);
  ~WindowLayout();
  WindowLayout(const WindowLayout&) = delete;
  WindowLayout& operator=(const WindowLayout&) = delete;

  // Puts the window to its place. Gives whether it was visible there, for the owner to show it;
  // nothing where that stays as it is.
  std::optional<bool> Restore(const LayoutDefaults& defaults);
  void Save() const;

 private:
  void OnSize(wxSizeEvent& event);
  void OnMove(wxMoveEvent& event);
  void NoteRect();

  wxWeakRef<wxTopLevelWindow> window_;
  const wxString prefix_;
  WindowPlace place_;
  // Of the window when it is neither maximised nor minimised: where it goes back to. Follows the
  // window once that has come to its place.
  wxRect normalRect_;
};

}  // namespace qv
