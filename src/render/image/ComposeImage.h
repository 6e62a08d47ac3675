#pragma once

#include "render/frame/EdgeMask.h"
#include "render/frame/RenderTarget.h"
#include "render/image/ScreenImage.h"

namespace qv {

// Brightness, contrast and gamma of one picture: contrast pivots about 0.5, brightness is added
// after it, gamma comes last.
struct Adjustment {
  Adjustment(float brightness, float contrast, float gamma);

  // A linear value as a float in 0 to 255; NaN where the power has none.
  float Adjust(float c) const;
  // The byte that is stored for it.
  std::uint8_t AdjustToByte(float c) const;

  float scale;     // 2^(2 contrast)
  float offset;    // brightness
  float exponent;  // 1 / gamma
};

// The byte of a value from 0 to 255, truncated; NaN gives 0.
std::uint8_t ToByte(float v);

// Writes the base picture without adjustment and without limits: only the low 8 bits of each number
// are kept.
void ComposePreview(const RenderTarget& base, ScreenImage& screen);

// Writes the adjusted base picture.
void ComposeBase(const RenderTarget& base, const Adjustment& adjustment, ScreenImage& screen);

// The same with the marked pixels taken as the mean of the adjusted values of their factor x factor
// samples.
void ComposeAntialiased(const RenderTarget& base, const RenderTarget& samples, int factor,
                        const EdgeMask& mask, const Adjustment& adjustment, ScreenImage& screen);

}  // namespace qv
