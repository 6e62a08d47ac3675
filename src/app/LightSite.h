#pragma once

#include "app/PanelSite.h"
#include "presets/LightFrame.h"

namespace qv {

// Brings light factors and image values to the renderer and the host. GUI thread only.
class LightSite : public LightFrame {
 public:
  // `site` outlives it.
  explicit LightSite(PanelSite& site) : site_(site) {}

 private:
  LightFactors GetLightFactors() override;
  void SetLightFactors(const LightFactors& factors) override;
  ImageValues GetImageValues() override;
  void SetImageValues(const ImageValues& values) override;
  bool IsLemBaked() override;
  void AdjustPicture() override;
  void RenderAnew() override;
  void SendLightFactors(const LightFactors& factors) override;
  void SendBrightness(float brightness, float contrast) override;
  void SendGamma(float gamma) override;

  PanelSite& site_;
};

}  // namespace qv
