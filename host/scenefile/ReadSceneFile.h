#pragma once

#include <string>

#include "host/scenefile/CheckedJson.h"
#include "host/scenefile/SceneFile.h"

namespace qv::host {

// What a scene file's text says. Throws a SceneFileError for whatever is not as docs/scene-files.md
// tells; looks at no other file.
SceneFile ReadSceneFile(const std::string& text);

// The parts of it. `unit` is the length in inches of the file's unit.

Vec3 ReadPoint(const JsonValue& value, double unit);
FileReference ReadFileReference(const JsonValue& value);
// With `name` for one that stands in a list, and else for all.
MaterialChange ReadMaterialChange(const JsonValue& value, bool named);
void ReadLights(const JsonValue& value, double unit, SceneFile& file);

}  // namespace qv::host
