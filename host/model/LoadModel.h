#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "host/model/Scene.h"

namespace qv::host {

enum class UpAxis { kX, kY, kZ };
enum class LengthUnit { kInch, kMetre, kCentimetre, kMillimetre, kFoot };

double MetresPer(LengthUnit unit);

struct LoadOptions {
  // What the file's coordinates mean, where the caller knows better than the file.
  std::optional<UpAxis> up;
  std::optional<LengthUnit> unit;
  // Where texture files go that are not beside the model; without one LoadModel makes its own. Who
  // gives one can remove it while another thread is still loading.
  std::shared_ptr<TemporaryFolder> temporaryFiles;
};

struct LoadResult {
  std::unique_ptr<Scene> scene;  // null if the model can't be read
  std::string error;             // why: one sentence for the user
};

// Reads a model file of any format that the import library knows. Throws nothing. Any thread; may
// take minutes for a large file.
LoadResult LoadModel(const std::filesystem::path& path, const LoadOptions& options = {});

}  // namespace qv::host
