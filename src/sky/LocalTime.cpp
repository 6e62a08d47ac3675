#include "sky/LocalTime.h"

#include "core/Calendar.h"

namespace qv::sky {
namespace {

constexpr double kJulianDateOfEpoch = 2451545.0;
constexpr double kDaysPerCentury = 36525.0;

// Terrestrial time minus Universal Time: 63.8 s in 2000, 66.1 s in 2010, 69.4 s in 2020 (IERS). The
// sun moves by 0.04 seconds of arc in a second, so that one value serves all dates that buildings
// are looked at.
constexpr double kTerrestrialMinusUniversal = 65.0 / 86400.0;

}  // namespace

void LocalTime::SetYear(int year) {
  if (year >= 1582) year_ = year;
}

void LocalTime::SetMonth(int month) {
  if (month >= 1 && month <= 12) month_ = month;
}

void LocalTime::SetDay(int day) {
  if (day >= 1 && day <= 31) day_ = day;
}

void LocalTime::SetHour(int hour) {
  if (hour >= 0 && hour < 24) hour_ = hour;
}

void LocalTime::SetMinute(int minute) {
  if (minute >= 0 && minute < 60) minute_ = minute;
}

void LocalTime::SetSeconds(double seconds) {
  if (seconds >= 0 && seconds < 60) seconds_ = seconds;
}

void LocalTime::SetTimeZone(double hours) {
  if (hours >= -12 && hours <= 12) timeZone_ = hours;
}

void LocalTime::SetDaylightSaving(bool daylightSaving) {
  daylightSaving_ = daylightSaving;
}

double LocalTime::JulianDate(TimeScale scale) const {
  const double clock = hour_ + minute_ / 60.0 + seconds_ / 3600.0;
  const double universal = clock - timeZone_ - (daylightSaving_ ? 1.0 : 0.0);
  const double julianDate = JulianDateFromCalendar(year_, month_, day_, universal, 0);
  return scale == TimeScale::kUniversal ? julianDate : julianDate + kTerrestrialMinusUniversal;
}

double LocalTime::Centuries(TimeScale scale) const {
  return (JulianDate(scale) - kJulianDateOfEpoch) / kDaysPerCentury;
}

}  // namespace qv::sky
