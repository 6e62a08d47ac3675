#pragma once

#include <assimp/scene.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/model/MaterialReader.h"
#include "host/model/TemporaryFolder.h"
#include "host/model/TextureFinder.h"

namespace qv::host {

// Turns the textures that a model file speaks of into files that the viewer can read: found beside
// the model, or written to the temporary folder where they are embedded, need a change of their
// pixels, or lie at a path that is too long for the link. One thread.
class TextureFiles {
 public:
  // `warnings` gets one sentence for each texture that can't be had.
  TextureFiles(const aiScene& scene, const std::filesystem::path& directory,
               std::shared_ptr<TemporaryFolder> temporaryFiles, std::vector<std::string>& warnings);

  // The path in the current multibyte encoding, short enough for the link.
  std::optional<std::string> FileFor(const TextureUse& texture);

 private:
  using Path = std::filesystem::path;

  std::optional<Path> MakeFile(const TextureUse& texture);
  std::optional<Path> Source(const std::string& name);
  std::optional<Path> WriteEmbedded(const aiTexture& texture);
  std::optional<Path> Changed(const Path& source, const TextureUse& texture);

  const aiScene& scene_;
  TextureFinder finder_;
  std::shared_ptr<TemporaryFolder> temporaryFiles_;
  std::vector<std::string>& warnings_;
  std::map<std::string, std::optional<std::string>> fileOfUse_;
  std::map<std::string, std::optional<Path>> sourceOfName_;
};

}  // namespace qv::host
