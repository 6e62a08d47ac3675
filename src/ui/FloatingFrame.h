#pragma once

#include <wx/frame.h>

namespace qv {

// A frame that floats over its parent and comes and goes with it. Closing hides it. Its numbers are
// its own: commands and update events of what is in it do not reach the parent.
class FloatingFrame : public wxFrame {
 public:
  FloatingFrame(wxWindow* parent, const wxString& title);

  // Disables or enables what is in it; the frame itself can be moved and closed all the while.
  void EnableContents(bool enable);
  bool ContentsEnabled() const { return contentsEnabled_; }

 private:
  bool contentsEnabled_ = true;
};

}  // namespace qv
