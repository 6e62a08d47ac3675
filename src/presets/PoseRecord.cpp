#include "presets/PoseRecord.h"

namespace qv {
namespace {

constexpr double kKeyDateOrigin = 2451546.0;

}  // namespace

void WriteInt(wxDataOutputStream& stream, std::int32_t value) {
  stream.Write32(static_cast<wxUint32>(value));
}

void WritePose(wxDataOutputStream& stream, const CameraPose& pose) {
  for (const float x : pose.position) stream.WriteFloat(x);
  for (const float x : pose.orientation.coeffs()) stream.WriteFloat(x);
  stream.WriteFloat(pose.fieldOfView);
}

CameraPose ReadPose(PresetReader& reader) {
  CameraPose pose;
  for (float& x : pose.position) x = reader.ReadFloat();
  for (float& x : pose.orientation.coeffs()) x = reader.ReadFloat();
  pose.fieldOfView = reader.ReadFloat();
  return pose;
}

void WriteSun(wxDataOutputStream& stream, const SunRecord& sun) {
  stream.WriteDouble(sun.julianDate);
  stream.WriteDouble(sun.latitude);
  stream.WriteDouble(sun.longitude);
  stream.WriteFloat(sun.sunParam);
  WriteInt(stream, sun.sunTag);
}

SunRecord ReadSun(PresetReader& reader) {
  SunRecord sun;
  sun.julianDate = reader.ReadDouble();
  sun.latitude = reader.ReadDouble();
  sun.longitude = reader.ReadDouble();
  sun.sunParam = reader.ReadFloat();
  sun.sunTag = reader.ReadInt();
  return sun;
}

void WriteKey(wxDataOutputStream& stream, const CameraKey& key) {
  stream.WriteDouble(key.time);
  WritePose(stream, key.pose);
  SunRecord sun = key.sun;
  sun.julianDate -= kKeyDateOrigin;
  WriteSun(stream, sun);
}

CameraKey ReadKey(PresetReader& reader) {
  CameraKey key;
  key.time = reader.ReadDouble();
  key.pose = ReadPose(reader);
  key.sun = ReadSun(reader);
  key.sun.julianDate += kKeyDateOrigin;
  return key;
}

}  // namespace qv
