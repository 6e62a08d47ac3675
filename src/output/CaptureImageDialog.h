#pragma once

#include "output/CaptureForm.h"
#include "ui/CaptureImageDialogBase.h"

namespace qv {

// Asks for format and size of a captured image. It begins with what the settings store holds, and
// ends with the result OK when the choice makes sense and is stored.
class CaptureImageDialog : public _CaptureImageDialog {
 public:
  // `view`: the size of the renderer's present pictures.
  CaptureImageDialog(wxWindow* parent, const wxSize& view);

  // False if the text fields do not convert.
  bool GetSettings(wxString& filter, int& width, int& height) const;

 private:
  void OnOk(wxCommandEvent& event) override;
  CaptureForm Form() const;

  const wxSize view_;
};

}  // namespace qv
