#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace qv::host {

// Finds the image files that a model names, which seldom still lie where its author had them.
// Tried in this order: the path as it stands; the path from the model's folder; the same whatever
// the case of the letters; its last parts from the model's folder; its last part alone in any
// folder below the model's, or in the folders beside it that usually hold textures. Backslashes
// and percent escapes are understood. One thread.
class TextureFinder {
 public:
  // `directory` is the model's, absolute.
  explicit TextureFinder(std::filesystem::path directory) : directory_(std::move(directory)) {}

  std::optional<std::filesystem::path> Find(const std::string& name);

 private:
  std::optional<std::filesystem::path> FindCleaned(const std::string& name);
  std::optional<std::filesystem::path> FindByLastPart(const std::string& name);
  void ListFolder(const std::filesystem::path& folder, int depth);

  std::filesystem::path directory_;
  bool listed_ = false;
  std::map<std::string, std::filesystem::path> fileOfName_;  // names in lower case
};

}  // namespace qv::host
