#pragma once

#include <vector>

namespace qv::bench {

// The value below which `share`, 0 to 1, of all lie; there must be one.
double Quantile(std::vector<double> values, double share);

// A median and how far it can be trusted.
struct Median {
  double value = 0;
  double low = 0, high = 0;  // with a probability of about 95 % the true one lies between
};

// Bounds from the values in order, which know nothing of how they spread: the ranks around the
// middle by two deviations of a binomial count (Conover, Practical Nonparametric Statistics).
Median MedianOf(const std::vector<double>& values);

}  // namespace qv::bench
