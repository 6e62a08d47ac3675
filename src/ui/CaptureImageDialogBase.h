#pragma once

#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

namespace qv {

// Lays out the dialog that asks for format and size of a captured image.
class _CaptureImageDialog  // NOLINT(bugprone-reserved-identifier): layout layers carry an
                           // underscore
    : public wxDialog {
 public:
  // `view`: the size that the first of the two sizes stands for.
  _CaptureImageDialog(wxWindow* parent, const wxArrayString& formats, const wxSize& view);

 protected:
  virtual void OnOk(wxCommandEvent& event) = 0;

  wxChoice* format_;
  wxRadioButton* viewSize_;
  wxRadioButton* ownSize_;
  wxTextCtrl* width_;
  wxTextCtrl* height_;

 private:
  wxSizer* MakeFormatRow(const wxArrayString& formats);
  wxSizer* MakeSizeBox(const wxSize& view);
};

}  // namespace qv
