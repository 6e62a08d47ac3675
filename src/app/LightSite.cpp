#include "app/LightSite.h"

namespace qv {

LightFactors LightSite::GetLightFactors() {
  const RaytraceImpl* renderer = site_.Renderer();
  return renderer ? renderer->GetLightSettings() : LightFactors();
}

void LightSite::SetLightFactors(const LightFactors& factors) {
  if (RaytraceImpl* renderer = site_.Renderer()) renderer->SetLightSettings(factors);
}

ImageValues LightSite::GetImageValues() {
  const RaytraceImpl* renderer = site_.Renderer();
  if (!renderer) return {};
  const ImageSettings settings = renderer->GetImageSettings();
  return {settings.brightness, settings.contrast, settings.gamma};
}

void LightSite::SetImageValues(const ImageValues& values) {
  if (RaytraceImpl* renderer = site_.Renderer()) {
    renderer->SetImageSettings({values.brightness, values.contrast, values.gamma});
  }
}

bool LightSite::IsLemBaked() {
  const RaytraceImpl* renderer = site_.Renderer();
  return renderer && renderer->UseLightmap() && renderer->LightmapHasLEM();
}

void LightSite::AdjustPicture() {
  RaytraceImpl* renderer = site_.SceneRenderer();
  if (!renderer || renderer->State() != RenderState::kIdle) return;
  renderer->ComposeImage(true);
  site_.ShowAdjustedPicture();
}

void LightSite::RenderAnew() {
  if (RaytraceImpl* renderer = site_.SceneRenderer()) renderer->StartRenderSameCamera(ModeStill);
}

void LightSite::SendLightFactors(const LightFactors& factors) {
  if (auto* link = site_.Link()) link->SetLightFactors(factors);
}

void LightSite::SendBrightness(float brightness, float contrast) {
  if (auto* link = site_.Link()) link->SetBrightness(brightness, contrast);
}

void LightSite::SendGamma(float gamma) {
  if (auto* link = site_.Link()) link->SetGamma(gamma);
}

}  // namespace qv
