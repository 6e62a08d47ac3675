#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/model/Scene.h"

namespace qv::host {

// The materials of a scene, each once. Beyond `limit` a new material becomes the nearest of those
// that are there: with the same texture if there is one, else the nearest in colour and opacity.
class MaterialTable {
 public:
  explicit MaterialTable(std::size_t limit) : limit_(limit) {}

  // The index of an equal material, or of a new one.
  std::uint32_t IndexOf(const SceneMaterial& material);

  // All of them; changes those of a scene of which nothing could be seen, and warns of that and of
  // materials that had to take another's place, one sentence each. To be called last.
  std::vector<SceneMaterial> Take(std::vector<std::string>& warnings);

 private:
  std::uint32_t NearestTo(const SceneMaterial& material) const;

  std::size_t limit_;
  std::size_t replaced_ = 0;
  std::vector<SceneMaterial> materials_;
  std::map<std::string, std::uint32_t> indexOfBytes_;
};

}  // namespace qv::host
