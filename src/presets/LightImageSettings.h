#pragma once

#include <wx/string.h>

#include <vector>

class wxConfigBase;

namespace qv {

// A named set of light intensities and image adjustments. The light factors multiply what the model
// says; brightness and contrast run from -1 to 1.
struct LightImageSettings {
  wxString name;
  float sun = 1.0f;
  float ambient = 1.0f;
  bool useSkyColorForAmbient = false;
  float point = 1.0f;  // omni and spot lights
  float lem = 1.0f;
  float brightness = 0.0f;
  float contrast = 0.0f;
  float gamma = 1.0f;
};

// The sets that the settings store holds, in its order. A number that is missing has its default.
std::vector<LightImageSettings> LoadLightImageSettings(wxConfigBase& settings);

// Replaces all sets of the store.
void SaveLightImageSettings(wxConfigBase& settings, const std::vector<LightImageSettings>& sets);

}  // namespace qv
