#pragma once

namespace qv {

struct CalendarDate {
  int year = 0;
  int month = 0;     // 1 to 12
  int day = 0;       // 1 to 31
  double hours = 0;  // of the day, local to the zone of the longitude; 0 to 24
};

// The Julian date of a local calendar date (J. Meeus, Astronomical Algorithms, chapter 7, with the
// month lengths in the form 30.59). The time zone is the nearest whole hour of the longitude in
// degrees, 15 degrees to the hour. Dates from 1582-10-15 on are Gregorian.
double JulianDateFromCalendar(int year, int month, int day, double hours, double longitude);

// The inverse. A value that is not finite, or of more than a hundred thousand million days, gives a
// date of all zeros.
CalendarDate CalendarFromJulianDate(double julianDate, double longitude);

struct CalendarTime {
  int year = 0, month = 0, day = 0;
  int hour = 0, minute = 0, second = 0;
};

// The same to the nearest second. A Julian date of our time resolves some 40 microseconds, so that
// a whole second may come back as just below it.
CalendarTime CalendarTimeFromJulianDate(double julianDate, double longitude);

}  // namespace qv
