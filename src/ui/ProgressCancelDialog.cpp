#include "ui/ProgressCancelDialog.h"

#include <wx/intl.h>
#include <wx/sizer.h>

#include <algorithm>

namespace qv {
namespace {

constexpr int kRange = 100;
constexpr int kWidth = 320;
constexpr int kMargin = 12;
constexpr int kGap = 8;

}  // namespace

ProgressCancelDialog::ProgressCancelDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
               wxCAPTION | wxCLOSE_BOX | wxSYSTEM_MENU) {
  text_ = new wxStaticText(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                           wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_END);
  gauge_ = new wxGauge(this, wxID_ANY, kRange, wxDefaultPosition, wxSize(FromDIP(kWidth), -1),
                       wxGA_HORIZONTAL | wxGA_SMOOTH);
  cancel_ = new wxButton(this, wxID_CANCEL);
  const int margin = FromDIP(kMargin);
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(text_, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxTOP, margin));
  all->AddSpacer(FromDIP(kGap));
  all->Add(gauge_, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, margin));
  all->Add(cancel_, wxSizerFlags().Right().Border(wxALL, margin));
  SetSizerAndFit(all);
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { Cancel(); }, wxID_CANCEL);
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
    if (event.CanVeto()) event.Veto();
    Cancel();
  });
}

void ProgressCancelDialog::Reset(const wxString& title, const wxString& text) {
  cancelled_ = false;
  SetTitle(title);
  EnableCancel(true);
  ShowProgress(0, text);
  CentreOnParent();
}

void ProgressCancelDialog::ShowProgress(int percent, const wxString& text) {
  const int value = std::clamp(percent, 0, kRange);
  if (gauge_->GetValue() != value) gauge_->SetValue(value);
  if (text_->GetLabelText() != text) text_->SetLabelText(text);
}

void ProgressCancelDialog::EnableCancel(bool enable) {
  if (cancel_->IsEnabled() != enable) cancel_->Enable(enable);
}

void ProgressCancelDialog::Cancel() {
  if (!cancel_->IsEnabled()) return;
  cancelled_ = true;
  EnableCancel(false);
}

}  // namespace qv
