#include "host/app/Sunlight.h"

#include "sky/LocalTime.h"
#include "sky/Location.h"
#include "sky/SunPosition.h"

namespace qv::host {

Vec3 SunlightAt(const LocationAndTime& when) {
  sky::LocalTime time;
  time.SetDaylightSaving(false);
  time.SetTimeZone(when.timeZone);
  time.SetYear(when.year);
  time.SetMonth(when.month);
  time.SetDay(when.day);
  time.SetHour(when.hour);
  time.SetMinute(when.minute);
  time.SetSeconds(when.second);
  sky::Location place;
  place.SetLatitude(static_cast<double>(when.latitude));
  place.SetLongitude(static_cast<double>(when.longitude));
  return sky::LightDirection(sky::SunPosition(time, place), when.sunRotation);
}

}  // namespace qv::host
