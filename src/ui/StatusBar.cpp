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
    for (int field = kText; field < kFieldCount; ++field) WriteText(static_cast<Field>(field));
    PlaceGauge();
  });
}

void StatusBar::ShowText(Field field, const wxString& text) {
  texts_[field] = text;
  WriteText(field);
}

void StatusBar::WriteText(Field field) {
  // Until the window system has given the bar its size there may be fields without an area, which
  // the toolkit cannot paint.
  wxRect area;
  if (!GetFieldRect(field, area) || area.IsEmpty()) return;
  if (GetStatusText(field) != texts_[field]) SetStatusText(texts_[field], field);
}

void StatusBar::ShowProgress(int value) {
  value = std::clamp(value, 0, kGaugeRange);
  if (gauge_->GetValue() != value) gauge_->SetValue(value);
}

void StatusBar::PlaceGauge() {
  wxRect area;
  const bool placed = GetFieldRect(kProgress, area) && !area.Deflate(kGaugeInset).IsEmpty();
  gauge_->Show(placed);
  if (!placed) return;
  // A theme whose bar is a thin line draws it at the bottom of the gauge.
  const int natural = gauge_->GetBestSize().y;
  if (natural * 2 < area.height) area.Deflate(0, (area.height - natural) / 2);
  gauge_->SetSize(area);
}

}  // namespace qv
