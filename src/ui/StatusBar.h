#pragma once

#include <wx/gauge.h>
#include <wx/statusbr.h>

namespace qv {

// The four fields at the foot of the main window: what is going on, date and time of the sun, eye
// height, and a gauge.
class StatusBar : public wxStatusBar {
 public:
  enum Field { kText, kSunTime, kEyeHeight, kProgress, kFieldCount };
  static constexpr int kGaugeRange = 10;

  explicit StatusBar(wxWindow* parent);

  // Writes a field unless it shows that text already.
  void ShowText(Field field, const wxString& text);
  // From 0 to kGaugeRange.
  void ShowProgress(int value);

 private:
  void WriteText(Field field);
  void PlaceGauge();

  wxString texts_[kFieldCount];
  wxGauge* gauge_;
};

}  // namespace qv
