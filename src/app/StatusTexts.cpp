#include "app/StatusTexts.h"

#include <wx/intl.h>

#include "core/Calendar.h"

namespace qv {

std::string SunTimeText(double julianDate, float longitude) {
  const CalendarTime time = CalendarTimeFromJulianDate(julianDate, longitude);
  return wxString::Format("%02d:%02d %d/%d", time.hour, time.minute, time.month, time.day)
      .ToStdString();
}

wxString EyeHeightText(float eyeHeight) {
  return wxString::Format(_("Cam Height: %.1f\""), eyeHeight);
}

wxString StatisticsText(double basePassSeconds, double antialiasPassSeconds,
                        std::int32_t triangleCount, std::int32_t materialCount) {
  return wxString::Format(
      _("Rendering Time = %.3f Rendering Time(AA)= %.3f\nPolygon = %d, Material = %d"),
      basePassSeconds, antialiasPassSeconds, triangleCount, materialCount);
}

wxString MemoryRefusedText(const wxSize& size) {
  return wxString::Format(_("There is not enough memory for a picture of %d by %d pixels."), size.x,
                          size.y);
}

}  // namespace qv
