#pragma once

#include <algorithm>
#include <cmath>
#include <span>

#include "core/Vec.h"
#include "link/IQuorvane.h"
#include "link/Records.h"

// Between the plain fields of the records and the values that the rest of the program uses.
namespace qv::wire {

inline Vec3 ToVec3(const float (&v)[3]) {
  return {v[0], v[1], v[2]};
}

inline void FromVec3(const Vec3& from, float (&to)[3]) {
  std::copy_n(from.data(), 3, to);
}

inline bool Finite(std::span<const float> numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](float n) { return std::isfinite(n); });
}

inline LocationAndTime ToLocation(const LocationRecord& record) {
  LocationAndTime when;
  when.sunRotation = record.sunRotation;
  when.latitude = record.latitude;
  when.longitude = record.longitude;
  when.year = record.year;
  when.month = record.month;
  when.day = record.day;
  when.hour = record.hour;
  when.minute = record.minute;
  when.second = record.second;
  when.timeZone = record.timeZone;
  return when;
}

inline LocationRecord FromLocation(const LocationAndTime& when) {
  return {when.sunRotation, when.latitude, when.longitude, when.year,   when.month,
          when.day,         when.hour,     when.minute,    when.second, when.timeZone};
}

}  // namespace qv::wire
