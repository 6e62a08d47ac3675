#include <gtest/gtest.h>

#include <cstdint>

#include "core/Random.h"

namespace qv {
namespace {

// The beginning of the reference output that is published with the generator for the seed 1234
// (SFMT.19937.out.txt).
TEST(Random, GivesThePublishedReferenceOutput) {
  constexpr std::uint32_t kReference[] = {3440181298u, 1564997079u, 1510669302u, 2930277156u,
                                          1452439940u, 3796268453u, 423124208u,  2143818589u,
                                          3827219408u, 2987036003u};
  Random random(1234);
  for (std::uint32_t expected : kReference) EXPECT_EQ(random.NextWord(), expected);
}

}  // namespace
}  // namespace qv
