#include "ui/EyeHeightPopUpBase.h"

#include <wx/sizer.h>

namespace qv {
namespace {

const wxSize kSize(136, 47);
// So wide that neither button comes to an end.
constexpr int kLeastSpin = -99999;
constexpr int kMostSpin = 100000;
constexpr int kBorder = 6;

}  // namespace

_EyeHeightPopUp::_EyeHeightPopUp(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("Camera Height"), wxDefaultPosition, wxDefaultSize,
               wxBORDER_SIMPLE) {
  height_ = new wxTextCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                           wxTE_PROCESS_ENTER);
  height_->SetInitialSize(height_->GetSizeFromTextSize(height_->GetTextExtent("99999.9")));
  spin_ = new wxSpinButton(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxSP_VERTICAL);
  spin_->SetRange(kLeastSpin, kMostSpin);

  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(height_, wxSizerFlags(1).CenterVertical());
  row->Add(spin_, wxSizerFlags().CenterVertical());
  auto* sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(row, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(kBorder)));
  SetSizer(sizer);
  SetMinClientSize(FromDIP(kSize));
  Fit();

  height_->Bind(wxEVT_TEXT_ENTER, &_EyeHeightPopUp::OnEnter, this);
  spin_->Bind(wxEVT_SPIN_UP, &_EyeHeightPopUp::OnUp, this);
  spin_->Bind(wxEVT_SPIN_DOWN, &_EyeHeightPopUp::OnDown, this);
  Bind(wxEVT_ACTIVATE, &_EyeHeightPopUp::OnActivate, this);
  Bind(wxEVT_CHAR_HOOK, &_EyeHeightPopUp::OnCharHook, this);
}

}  // namespace qv
