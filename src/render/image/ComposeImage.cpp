#include "render/image/ComposeImage.h"

#include <vector>

#include "render/image/ParallelRows.h"
#include "render/image/PixelOps.h"

namespace qv {
namespace {

void ComposeAdjustedRow(const float* from, int width, const Adjustment& adjustment,
                        std::uint8_t* to) {
  adjustment.AdjustRow(from, 3 * static_cast<std::size_t>(width), to);
  SwapRedAndBlue(to, static_cast<std::size_t>(width));
}

// Puts the means of the adjusted samples in the places of a row's marked pixels: not the adjusted
// means, for the sake of what the eye sees at the edge of a bright surface.
class SampleMeans {
 public:
  SampleMeans(const RenderTarget& samples, int factor, const Adjustment& adjustment)
      : samples_(samples),
        factor_(factor),
        perPixel_(3 * static_cast<std::size_t>(factor * factor)),
        adjustment_(adjustment) {}

  void ComposeRow(int y, const std::uint32_t* marks, int width, std::uint8_t* to) {
    values_.clear();
    for (int x = 0; x < width; ++x) {
      if (marks[x] != 0) Collect(x, y);
    }
    adjustment_.AdjustValues(values_.data(), values_.size(), values_.data());
    const float* values = values_.data();
    for (int x = 0; x < width; ++x) {
      if (marks[x] == 0) continue;
      StoreMean(values, to + 3 * static_cast<std::ptrdiff_t>(x));
      values += perPixel_;
    }
  }

 private:
  void Collect(int x, int y) {
    const std::size_t run = 3 * static_cast<std::size_t>(factor_);
    for (int j = 0; j < factor_; ++j) {
      const float* row = samples_.Row(factor_ * y + j) + run * static_cast<std::size_t>(x);
      values_.insert(values_.end(), row, row + run);
    }
  }

  void StoreMean(const float* values, std::uint8_t* to) const {
    float sum[3] = {0, 0, 0};
    for (std::size_t i = 0; i < perPixel_; i += 3) {
      for (std::size_t c = 0; c < 3; ++c) sum[c] += values[i + c];
    }
    const float share = 1.0f / static_cast<float>(factor_ * factor_);
    for (std::size_t c = 0; c < 3; ++c) to[c] = ToByte(sum[2 - c] * share);
  }

  const RenderTarget& samples_;
  int factor_;
  std::size_t perPixel_;  // floats
  const Adjustment& adjustment_;
  std::vector<float> values_;  // of the marked pixels of one row
};

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
    SampleMeans means(samples, factor, adjustment);
    for (int y = first; y < last; ++y) {
      std::uint8_t* to = screen.Row(y);
      ComposeAdjustedRow(base.Row(y), base.width(), adjustment, to);
      means.ComposeRow(y, mask.Row(y), base.width(), to);
    }
  });
}

}  // namespace qv
