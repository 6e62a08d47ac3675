#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sky/BackgroundTypes.h"

namespace qv {

// What is chosen in the background dialog: a mode, and in it one entry of a list. Nothing of it
// reaches the renderer before the user agrees.
class BackgroundChoice {
 public:
  // As the renderer has them at the opening of the dialog. A type that the table does not know is
  // added to it, without a label.
  BackgroundChoice(sky::BackgroundTypes types, std::vector<std::wstring> cubeMapNames,
                   std::int32_t backgroundType, std::int32_t cubeMapIndex);

  bool IsTexture() const { return dialogType_ == sky::kTextureBackground; }
  // Cube maps, or the labels of all weather.
  std::vector<std::wstring> List() const;
  // The place in the list; -1 if what is chosen is not in it.
  int Selection() const;

  // True if the list is another one now. From a cube map to weather it is always the same weather.
  bool ChooseTexture();
  bool ChooseSimulation();
  // A place in the list; others change nothing.
  void Choose(int selection);

  std::int32_t BackgroundType() const { return dialogType_; }
  std::int32_t CubeMapIndex() const { return dialogCubeMapIndex_; }

 private:
  std::vector<std::int32_t> WeatherKeys() const;

  sky::BackgroundTypes types_;
  std::vector<std::wstring> cubeMapNames_;
  std::int32_t dialogType_;
  std::int32_t dialogCubeMapIndex_;
};

}  // namespace qv
