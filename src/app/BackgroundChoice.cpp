#include "app/BackgroundChoice.h"

#include <algorithm>
#include <utility>

namespace qv {

BackgroundChoice::BackgroundChoice(sky::BackgroundTypes types,
                                   std::vector<std::wstring> cubeMapNames,
                                   std::int32_t backgroundType, std::int32_t cubeMapIndex)
    : types_(std::move(types)),
      cubeMapNames_(std::move(cubeMapNames)),
      dialogType_(backgroundType),
      dialogCubeMapIndex_(cubeMapIndex) {
  types_.try_emplace(backgroundType);
}

std::vector<std::int32_t> BackgroundChoice::WeatherKeys() const {
  std::vector<std::int32_t> keys;
  for (const auto& [key, type] : types_) {
    if (key != sky::kTextureBackground) keys.push_back(key);
  }
  return keys;
}

std::vector<std::wstring> BackgroundChoice::List() const {
  if (IsTexture()) return cubeMapNames_;
  std::vector<std::wstring> labels;
  for (const std::int32_t key : WeatherKeys()) labels.push_back(types_.at(key).label);
  return labels;
}

int BackgroundChoice::Selection() const {
  if (IsTexture()) {
    const bool listed = dialogCubeMapIndex_ >= 0 &&
                        dialogCubeMapIndex_ < static_cast<std::int32_t>(cubeMapNames_.size());
    return listed ? dialogCubeMapIndex_ : -1;
  }
  const std::vector<std::int32_t> keys = WeatherKeys();
  return static_cast<int>(std::find(keys.begin(), keys.end(), dialogType_) - keys.begin());
}

bool BackgroundChoice::ChooseTexture() {
  return std::exchange(dialogType_, sky::kTextureBackground) != sky::kTextureBackground;
}

bool BackgroundChoice::ChooseSimulation() {
  if (!IsTexture()) return false;
  dialogType_ = sky::kFirstWeather;
  return true;
}

void BackgroundChoice::Choose(int selection) {
  if (selection < 0 || selection >= static_cast<int>(List().size())) return;
  if (IsTexture()) {
    dialogCubeMapIndex_ = selection;
  } else {
    dialogType_ = WeatherKeys()[static_cast<std::size_t>(selection)];
  }
}

}  // namespace qv
