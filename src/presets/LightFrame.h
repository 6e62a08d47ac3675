#pragma once

#include <wx/string.h>

#include <vector>

#include "core/LightFactors.h"

namespace qv {

// What acts on the finished picture.
struct ImageValues {
  float brightness = 0;
  float contrast = 0;
  float gamma = 1;
};

// What the light settings need of the main frame. Calls belong to the GUI thread.
class LightFrame {
 public:
  virtual ~LightFrame() = default;
  // The renderer's values.
  virtual LightFactors GetLightFactors() = 0;
  virtual void SetLightFactors(const LightFactors& factors) = 0;
  virtual ImageValues GetImageValues() = 0;
  virtual void SetImageValues(const ImageValues& values) = 0;
  // Whether the lightmap in use holds the light of the LEM lights, so that its factor has no
  // effect.
  virtual bool IsLemBaked() = 0;
  // Writes the picture anew with the image values, if no frame is being rendered, and shows it.
  virtual void AdjustPicture() = 0;
  // Renders the picture anew from the same camera.
  virtual void RenderAnew() = 0;
  // The host keeps the values with the model.
  virtual void SendLightFactors(const LightFactors& factors) = 0;
  virtual void SendBrightness(float brightness, float contrast) = 0;
  virtual void SendGamma(float gamma) = 0;
};

enum class LightControl { kSun, kAmbient, kPoint, kLem, kBrightness, kContrast, kGamma };

// The controls as they are shown; calls here cause no events.
class LightControls {
 public:
  virtual ~LightControls() = default;
  virtual void SetSlider(LightControl control, int position) = 0;
  virtual int Slider(LightControl control) const = 0;
  virtual void SetText(LightControl control, const wxString& text) = 0;
  virtual wxString Text(LightControl control) const = 0;
  virtual void SetUseSkyColor(bool use) = 0;
  virtual bool UseSkyColor() const = 0;
  // The names of the sets; the text beside them is kept.
  virtual void SetNames(const std::vector<wxString>& names) = 0;
  virtual void SetName(const wxString& name) = 0;
  virtual wxString Name() const = 0;
  // A question with OK and Cancel.
  virtual bool Confirm(const wxString& question) = 0;
};

}  // namespace qv
