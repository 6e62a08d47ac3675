#include "output/CaptureImageDialog.h"

#include <wx/config.h>
#include <wx/msgdlg.h>

namespace qv {

CaptureImageDialog::CaptureImageDialog(wxWindow* parent, const wxSize& view)
    : _CaptureImageDialog(parent, CaptureForm::FormatNames(), view), view_(view) {
  const CaptureForm form(*wxConfigBase::Get());
  format_->SetSelection(form.format);
  viewSize_->SetValue(!form.ownSize);
  ownSize_->SetValue(form.ownSize);
  width_->SetValue(form.width);
  height_->SetValue(form.height);
  UpdateWindowUI(wxUPDATE_UI_RECURSE);
}

CaptureForm CaptureImageDialog::Form() const {
  CaptureForm form(*wxConfigBase::Get());
  form.format = format_->GetSelection();
  form.ownSize = ownSize_->GetValue();
  form.width = width_->GetValue();
  form.height = height_->GetValue();
  return form;
}

bool CaptureImageDialog::GetSettings(wxString& filter, int& width, int& height) const {
  const std::optional<CaptureRequest> request = Form().GetSettings(view_);
  if (!request) return false;
  filter = request->filter;
  width = request->width;
  height = request->height;
  return true;
}

void CaptureImageDialog::OnOk(wxCommandEvent&) {
  if (const auto problem = Form().Accept(view_, *wxConfigBase::Get())) {
    wxMessageBox(*problem, wxMessageBoxCaptionStr, wxOK | wxICON_WARNING, this);
    return;
  }
  EndModal(wxID_OK);
}

}  // namespace qv
