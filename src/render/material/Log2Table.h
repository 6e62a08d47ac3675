#pragma once

#include <vector>

namespace qv {

// Base-2 logarithms of texture footprints: 102400 entries a hundredth apart, entry 0 being 0,
// interpolated linearly and constant from 1022.9 on. One table is shared by all renderers.
class Log2Table {
 public:
  static const Log2Table& Instance();

  float operator()(float v) const {
    if (!(v < kEnd)) return entries_.back();
    if (!(v > 0)) return entries_.front();
    const float scaled = v * kPerUnit;
    const int i = static_cast<int>(scaled);
    const float f = scaled - static_cast<float>(i);
    return (1 - f) * entries_[i] + f * entries_[i + 1];
  }

 private:
  static constexpr int kSize = 102400;
  static constexpr float kPerUnit = 100;
  static constexpr float kEnd = 1022.9f;

  Log2Table();
  std::vector<float> entries_;
};

}  // namespace qv
