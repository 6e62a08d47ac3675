#include "render/image/ComposeImage.h"

#include "render/image/ParallelRows.h"
#include "render/image/PixelOps.h"

namespace qv {
namespace {

void ComposeAdjustedRow(const float* from, int width, const Adjustment& adjustment,
                        std::uint8_t* to) {
  adjustment.AdjustRow(from, 3 * static_cast<std::size_t>(width), to);
  SwapRedAndBlue(to, static_cast<std::size_t>(width));
}

// The mean of the adjusted samples, not of the linear ones: what the eye sees at the edge of a
// bright surface.
void ComposeMean(const RenderTarget& samples, int factor, int x, int y,
                 const Adjustment& adjustment, std::uint8_t* to) {
  float sum[3] = {0, 0, 0};
  for (int j = 0; j < factor; ++j) {
    const float* row = samples.Row(factor * y + j) +
                       static_cast<std::size_t>(factor) * static_cast<std::size_t>(x) * 3;
    for (int i = 0; i < factor; ++i, row += 3) {
      for (int c = 0; c < 3; ++c) sum[c] += adjustment.Adjust(row[c]);
    }
  }
  const float share = 1.0f / static_cast<float>(factor * factor);
  to[0] = ToByte(sum[2] * share);
  to[1] = ToByte(sum[1] * share);
  to[2] = ToByte(sum[0] * share);
}

}  // namespace

void ComposePreview(const RenderTarget& base, int threads, ScreenImage& screen) {
  ForBandsOfRows(base.height(), threads, [&](int first, int last) {
    for (int y = first; y < last; ++y) {
      TakeLowBytes(base.Row(y), 3 * static_cast<std::size_t>(base.width()), screen.Row(y));
      SwapRedAndBlue(screen.Row(y), static_cast<std::size_t>(base.width()));
    }
  });
}

void ComposeBase(const RenderTarget& base, const Adjustment& adjustment, int threads,
                 ScreenImage& screen) {
  ForBandsOfRows(base.height(), threads, [&](int first, int last) {
    for (int y = first; y < last; ++y) {
      ComposeAdjustedRow(base.Row(y), base.width(), adjustment, screen.Row(y));
    }
  });
}

void ComposeAntialiased(const RenderTarget& base, const RenderTarget& samples, int factor,
                        const EdgeMask& mask, const Adjustment& adjustment, int threads,
                        ScreenImage& screen) {
  ForBandsOfRows(base.height(), threads, [&](int first, int last) {
    for (int y = first; y < last; ++y) {
      std::uint8_t* to = screen.Row(y);
      ComposeAdjustedRow(base.Row(y), base.width(), adjustment, to);
      const std::uint32_t* marks = mask.Row(y);
      for (int x = 0; x < base.width(); ++x, to += 3) {
        if (marks[x] != 0) ComposeMean(samples, factor, x, y, adjustment, to);
      }
    }
  });
}

}  // namespace qv
