#include <gtest/gtest.h>

#include "platform/NarrowText.h"

namespace qv::platform {
namespace {

// The system's encoding is whatever it is; these bytes mean the same in Latin-1 and in the code
// pages of western Windows systems.
TEST(NarrowText, IsUtf8OrElseOfTheSystem) {
  for (const char* utf8 : {"", "plain", "B\xC3\xA4r \xE2\x82\xAC \xF0\x9F\x8F\xA0"}) {
    EXPECT_EQ(Utf8FromNarrow(utf8), utf8);
  }
  EXPECT_EQ(Utf8FromNarrow("B\xE4r"), "B\xC3\xA4r");
  EXPECT_EQ(Utf8FromNarrow("\xC3\xA4 \xE4"), "\xC3\x83\xC2\xA4 \xC3\xA4");  // not a mixture
  EXPECT_EQ(Utf8FromNarrow("\xC0\xAF"), "\xC3\x80\xC2\xAF");                // too long a form
  EXPECT_EQ(Utf8FromNarrow("\xC3"), "\xC3\x83");                            // cut off
}

}  // namespace
}  // namespace qv::platform
