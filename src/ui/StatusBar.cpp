#include "ui/StatusBar.h"

#include <algorithm>

#include "ui/CommandIds.h"

namespace qv {
namespace {

// Space between the gauge and each side of its field.
constexpr int kGaugeInset = 2;

}  // namespace

StatusBar::StatusBar(wxWindow* parent) : wxStatusBar(parent, wxID_ANY) {
  const int widths[kFieldCount] = {-1, FromDIP(100), FromDIP(150), FromDIP(150)};
  SetFieldsCount(kFieldCount, widths);
  gauge_ = new wxGauge(this, kIdGauge, kGaugeRange, wxDefaultPosition, wxDefaultSize,
                       wxGA_HORIZONTAL | wxGA_SMOOTH);
  gauge_->Hide();
  Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
    event.Skip();
    PlaceGauge();
  });
}

void StatusBar::ShowText(Field field, const wxString& text) {
  if (GetStatusText(field) != text) SetStatusText(text, field);
}

void StatusBar::ShowProgress(int value) {
  value = std::clamp(value, 0, kGaugeRange);
  if (gauge_->GetValue() != value) gauge_->SetValue(value);
}

void StatusBar::PlaceGauge() {
  wxRect field;
  if (!GetFieldRect(kProgress, field)) return;
  field.Deflate(kGaugeInset);
  // Before the bar has got its own size its fields have none.
  gauge_->Show(field.width > 0 && field.height > 0);
  if (gauge_->IsShown()) gauge_->SetSize(field);
}

}  // namespace qv
