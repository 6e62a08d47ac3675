#include <gtest/gtest.h>

#include <array>

#include "app/ToolRules.h"

namespace qv {
namespace {

TEST(ToolRules, FollowTheLightmapAndWhatItHolds) {
  struct Case {
    bool interactive, used, inUse, holdsLEM;
    bool occlusionEnabled, lemEnabled, lemChecked;
  };
  // The tool of the occlusion is checked as long as it is used, enabled or not.
  constexpr std::array kCases{Case{true, true, false, false, true, true, true},
                              Case{true, false, false, false, true, true, false},
                              // A lightmap that is not in use means nothing.
                              Case{true, true, false, true, true, true, true},
                              Case{true, true, true, false, false, true, true},
                              Case{true, false, true, false, false, true, false},
                              Case{true, true, true, true, false, false, false},
                              // Nothing is enabled while a scene is coming in.
                              Case{false, true, false, false, false, false, true},
                              Case{false, true, true, true, false, false, false}};
  for (std::size_t i = 0; i < kCases.size(); ++i) {
    SCOPED_TRACE(i);
    const Case& c = kCases[i];
    const LightmapUse lightmap{c.inUse, c.holdsLEM};
    const ToolState occlusion = AmbientOcclusionTool(c.interactive, c.used, lightmap);
    EXPECT_EQ(occlusion.enabled, c.occlusionEnabled);
    EXPECT_EQ(occlusion.checked, c.used);
    const ToolState lem = LEMTool(c.interactive, c.used, lightmap);
    EXPECT_EQ(lem.enabled, c.lemEnabled);
    EXPECT_EQ(lem.checked, c.lemChecked);
  }
}

}  // namespace
}  // namespace qv
