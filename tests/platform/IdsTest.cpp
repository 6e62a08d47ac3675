#include <gtest/gtest.h>

#include <set>

#include "platform/Ids.h"

namespace qv::platform {
namespace {

TEST(Ids, GuidsAreRandomOnesInWindowsByteOrder) {
  std::set<std::array<std::uint8_t, 16>> seen;
  for (int i = 0; i < 200; ++i) {
    const auto guid = NewGuid();
    // RFC 4122: version 4 in the high bits of the third field, whose bytes 6 and 7 are
    // little-endian here.
    EXPECT_EQ(guid[7] >> 4, 4);
    EXPECT_EQ(guid[8] >> 6, 2);
    seen.insert(guid);
  }
  EXPECT_EQ(seen.size(), 200u);
}

}  // namespace
}  // namespace qv::platform
