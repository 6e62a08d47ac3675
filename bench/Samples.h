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

// Of ten values or more, independent of each other; how they spread does not matter (Conover,
// Practical Nonparametric Statistics, confidence interval for a quantile).
Median MedianOf(const std::vector<double>& values);

}  // namespace qv::bench
