#include "Samples.h"

#include <algorithm>
#include <cmath>

namespace qv::bench {

double Quantile(std::vector<double> values, double share) {
  std::sort(values.begin(), values.end());
  const auto at = static_cast<std::size_t>(static_cast<double>(values.size()) * share);
  return values[std::min(at, values.size() - 1)];
}

Median MedianOf(const std::vector<double>& values) {
  const double reach = 0.98 / std::sqrt(static_cast<double>(values.size()));
  return {Quantile(values, 0.5), Quantile(values, std::max(0.0, 0.5 - reach)),
          Quantile(values, std::min(1.0, 0.5 + reach))};
}

}  // namespace qv::bench
