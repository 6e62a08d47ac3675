#pragma once

#include "render/frame/EdgeMask.h"
#include "render/frame/RenderTarget.h"
#include "render/image/Adjustment.h"
#include "render/image/ScreenImage.h"

namespace qv {

// All work on up to `threads` threads, and give the same picture with any number.

// Writes the base picture without adjustment and without limits: only the low 8 bits of each number
// are kept.
void ComposePreview(const RenderTarget& base, int threads, ScreenImage& screen);

// Writes the adjusted base picture.
void ComposeBase(const RenderTarget& base, const Adjustment& adjustment, int threads,
                 ScreenImage& screen);

// The same with the marked pixels taken as the mean of the adjusted values of their factor x factor
// samples.
void ComposeAntialiased(const RenderTarget& base, const RenderTarget& samples, int factor,
                        const EdgeMask& mask, const Adjustment& adjustment, int threads,
                        ScreenImage& screen);

}  // namespace qv
