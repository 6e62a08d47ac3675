#include "ui/CaptureImageDialogBase.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

namespace qv {
namespace {

constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kIndent = 24;
constexpr unsigned long kLongestNumber = 5;

}  // namespace

_CaptureImageDialog::_CaptureImageDialog(wxWindow* parent, const wxArrayString& formats,
                                         const wxSize& view)
    : wxDialog(parent, wxID_ANY, _("Image Settings")) {
  auto* all = new wxBoxSizer(wxVERTICAL);
  const int margin = FromDIP(kMargin);
  all->Add(MakeFormatRow(formats), wxSizerFlags().Expand().Border(wxALL, margin));
  all->Add(MakeSizeBox(view), wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
  if (wxSizer* buttons = CreateButtonSizer(wxOK | wxCANCEL)) {
    all->Add(buttons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
  }
  SetSizerAndFit(all);
  CentreOnParent();
  Bind(wxEVT_BUTTON, &_CaptureImageDialog::OnOk, this, wxID_OK);
  const auto needsOwnSize = [this](wxUpdateUIEvent& event) { event.Enable(ownSize_->GetValue()); };
  width_->Bind(wxEVT_UPDATE_UI, needsOwnSize);
  height_->Bind(wxEVT_UPDATE_UI, needsOwnSize);
}

wxSizer* _CaptureImageDialog::MakeFormatRow(const wxArrayString& formats) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(new wxStaticText(this, wxID_ANY, _("Format:")),
           wxSizerFlags().CentreVertical().Border(wxRIGHT, FromDIP(kGap)));
  format_ = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, formats);
  row->Add(format_, wxSizerFlags(1).CentreVertical());
  return row;
}

wxSizer* _CaptureImageDialog::MakeSizeBox(const wxSize& view) {
  auto* box = new wxStaticBoxSizer(wxVERTICAL, this, _("Size"));
  wxWindow* inside = box->GetStaticBox();
  viewSize_ = new wxRadioButton(
      inside, wxID_ANY, wxString::Format(_("Size of the view (%d x %d pixels)"), view.x, view.y),
      wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
  ownSize_ = new wxRadioButton(inside, wxID_ANY, _("Own size in pixels"));
  width_ = new wxTextCtrl(inside, wxID_ANY);
  height_ = new wxTextCtrl(inside, wxID_ANY);

  const int gap = FromDIP(kGap);
  auto* fields = new wxFlexGridSizer(4, gap, gap);
  const auto add = [&](const wxString& label, wxTextCtrl* field) {
    field->SetMaxLength(2 * kLongestNumber);
    field->SetInitialSize(
        field->GetSizeFromTextSize(field->GetTextExtent(wxString('0', kLongestNumber + 2)).x));
    fields->Add(new wxStaticText(inside, wxID_ANY, label), wxSizerFlags().CentreVertical());
    fields->Add(field, wxSizerFlags().CentreVertical());
  };
  add(_("Width:"), width_);
  add(_("Height:"), height_);

  box->Add(viewSize_, wxSizerFlags().Border(wxALL, gap));
  box->Add(ownSize_, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
  auto* indented = new wxBoxSizer(wxHORIZONTAL);
  indented->AddSpacer(FromDIP(kIndent));
  indented->Add(fields);
  box->Add(indented, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
  return box;
}

}  // namespace qv
