#include "app/StatusTexts.h"

#include <wx/intl.h>

#include "core/Calendar.h"

namespace qv {

std::string SunTimeText(double julianDate, float longitude) {
  // A Julian date resolves some 40 microseconds, so a whole minute may come back as just below it.
  constexpr double kHalfSecond = 0.5 / 86400.0;
  const CalendarDate date = CalendarFromJulianDate(julianDate + kHalfSecond, longitude);
  const int minutes = static_cast<int>(date.hours * 60);
  return wxString::Format("%02d:%02d %d/%d", minutes / 60, minutes % 60, date.month, date.day)
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

}  // namespace qv
