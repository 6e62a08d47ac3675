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
  // How many values lie below the true median is binomial, with a deviation of half the root of
  // their number; 1.96 deviations hold 95 % of a normal distribution.
  const double reach = 1.96 * 0.5 / std::sqrt(static_cast<double>(values.size()));
  return {Quantile(values, 0.5), Quantile(values, std::max(0.0, 0.5 - reach)),
          Quantile(values, std::min(1.0, 0.5 + reach))};
}

}  // namespace qv::bench
