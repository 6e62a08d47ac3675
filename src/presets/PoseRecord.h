#pragma once

#include <wx/datstrm.h>

#include "presets/CameraKey.h"
#include "presets/PresetReader.h"

// Parts of the records that several presets share.
namespace qv {

void WriteInt(wxDataOutputStream& stream, std::int32_t value);

// Position, orientation as x, y, z, w, field of view: 80 bytes.
void WritePose(wxDataOutputStream& stream, const CameraPose& pose);
CameraPose ReadPose(PresetReader& reader);

// Date, latitude, longitude, parameter, tag: 44 bytes.
void WriteSun(wxDataOutputStream& stream, const SunRecord& sun);
SunRecord ReadSun(PresetReader& reader);

// Keys hold their date as days since 2451546.0.
constexpr std::size_t kKeyRecordSize = 134;
void WriteKey(wxDataOutputStream& stream, const CameraKey& key);
CameraKey ReadKey(PresetReader& reader);

}  // namespace qv
