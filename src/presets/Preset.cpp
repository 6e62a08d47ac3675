#include "presets/Preset.h"

#include <cstdio>

#include "platform/Ids.h"
#include "presets/PoseRecord.h"
#include "presets/ViewMove.h"

namespace qv {
namespace {

// The text of a GUID whose groups lie in memory least significant byte first.
wxString NewPresetId() {
  const auto b = platform::NewGuid();
  // Every preset that is read takes one, so it is not made with the library's slow formatting.
  char text[36];
  std::snprintf(text, sizeof(text),
                "%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X%02X%02X", b[3], b[2],
                b[1], b[0], b[5], b[4], b[7], b[6], b[8], b[9], b[10], b[11], b[12], b[13], b[14],
                b[15]);
  return text;
}

}  // namespace

Preset::Preset(PresetType presetType) : id(NewPresetId()), type(presetType) {}

void Preset::Write(wxDataOutputStream& stream) const {
  WriteInt(stream, static_cast<std::int32_t>(type));
  stream.WriteString(id);
  WriteInt(stream, isOwn);
  stream.WriteString(name);
  WriteInt(stream, hasSunTime);
  WriteSun(stream, sun);
  stream.WriteString(comment);
}

void Preset::Read(PresetReader& reader) {
  id = reader.ReadText();
  isOwn = reader.ReadBool();
  name = reader.ReadText();
  hasSunTime = reader.ReadBool();
  sun = ReadSun(reader);
  comment = reader.ReadText();
}

bool Preset::Apply(CameraStage&) const {
  return true;
}

ViewPreset::ViewPreset(const wxString& viewName, const CameraPose& viewPose, std::int32_t flags,
                       float height, bool recordsSun, const SunRecord& viewSun)
    : Preset(PresetType::kView), pose(viewPose), viewFlags(flags), eyeHeight(height) {
  name = viewName;
  hasSunTime = recordsSun;
  sun = viewSun;
}

void ViewPreset::Write(wxDataOutputStream& stream) const {
  Preset::Write(stream);
  WriteInt(stream, noCamera);
  WritePose(stream, pose);
  WriteInt(stream, viewFlags);
  stream.WriteFloat(eyeHeight);
}

void ViewPreset::Read(PresetReader& reader) {
  Preset::Read(reader);
  noCamera = reader.ReadBool();
  pose = ReadPose(reader);
  viewFlags = reader.ReadInt();
  eyeHeight = reader.ReadFloat();
}

bool ViewPreset::Apply(CameraStage& stage) const {
  if (hasSunTime) SetSunDate(stage, sun.julianDate);
  if (noCamera) return true;
  return MoveTo(stage, pose, jumpDirectly);
}

}  // namespace qv
