#pragma once

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/gauge.h>
#include <wx/stattext.h>

namespace qv {

// Tells how far a long task is, and lets the user give it up. It does not block: the events of its
// parent go on. Escape and the button of the title bar are the same as "Cancel".
class ProgressCancelDialog : public wxDialog {
 public:
  explicit ProgressCancelDialog(wxWindow* parent);

  // Before it is shown again: 0 percent, not cancelled.
  void Reset(const wxString& title, const wxString& text);
  // From 0 to 100, and what is being done.
  void ShowProgress(int percent, const wxString& text);
  bool Cancelled() const { return cancelled_; }
  // Whether the user can cancel from now on.
  void EnableCancel(bool enable);

 private:
  void Cancel();

  wxStaticText* text_;
  wxGauge* gauge_;
  wxButton* cancel_;
  bool cancelled_ = false;
};

}  // namespace qv
