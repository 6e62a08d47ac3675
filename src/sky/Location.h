#pragma once

namespace qv::sky {

// A place on the earth. A value out of range leaves the one before.
class Location {
 public:
  double latitude() const { return latitude_; }    // degrees, north positive
  double longitude() const { return longitude_; }  // degrees, east positive
  double altitude() const { return altitude_; }    // metres

  void SetLatitude(double degrees) {
    if (degrees >= -90 && degrees <= 90) latitude_ = degrees;
  }
  void SetLongitude(double degrees) {
    if (degrees >= -180 && degrees <= 180) longitude_ = degrees;
  }

 private:
  double latitude_ = 30;
  double longitude_ = -122;
  double altitude_ = 100;
};

}  // namespace qv::sky
