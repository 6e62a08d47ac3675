#pragma once

namespace qv::sky {

// What a clock counts: Universal Time follows the turning of the earth, terrestrial time is even
// and is what the theories of sun and planets are written in.
enum class TimeScale { kUniversal, kTerrestrial };

// The reading of a calendar and a clock in a time zone. A value out of range leaves the one before.
class LocalTime {
 public:
  void SetYear(int year);           // from 1582
  void SetMonth(int month);         // 1 to 12
  void SetDay(int day);             // 1 to 31
  void SetHour(int hour);           // 0 to 23
  void SetMinute(int minute);       // 0 to 59
  void SetSeconds(double seconds);  // 0 to under 60
  void SetTimeZone(double hours);   // east of Greenwich, -12 to 12
  void SetDaylightSaving(bool daylightSaving);

  double JulianDate(TimeScale scale) const;
  // Julian centuries of 36525 days since 2000-01-01 12:00 of the scale.
  double Centuries(TimeScale scale) const;

 private:
  int year_ = 2006;
  int month_ = 8;
  int day_ = 22;
  int hour_ = 12;
  int minute_ = 0;
  double seconds_ = 0;
  double timeZone_ = -8;
  bool daylightSaving_ = true;
};

}  // namespace qv::sky
