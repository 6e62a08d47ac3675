#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "platform/Clock.h"
#include "platform/Ids.h"

namespace qv::platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const std::string kProgram = QUORVANE_TEST_CHILD;

TEST(ChildProcess, GivesTheExitCodeAgainAndAgain) {
  ChildProcess child = ChildProcess::Start(kProgram, {"exit", "7"});
  ASSERT_TRUE(child);
  EXPECT_NE(child.id(), 0u);
  EXPECT_NE(child.id(), CurrentProcessId());
  EXPECT_EQ(child.Wait(seconds(30)), 7);
  EXPECT_FALSE(child.Running());
  EXPECT_EQ(child.Wait(), 7);
}

TEST(ChildProcess, HandsArgumentsOverAsTheyAre) {
  // Blanks, quotes and backslashes are what a command line in one piece gets wrong.
  for (const std::string word :
       {"", "two words", "quo\"te", "back\\slash\\", "\\\"both\\\\\"", "a\tb"}) {
    ChildProcess child = ChildProcess::Start(kProgram, {"compare", word, "else"});
    EXPECT_EQ(child.Wait(seconds(30)), 1) << word;
    child = ChildProcess::Start(kProgram, {"compare", word, word});
    EXPECT_EQ(child.Wait(seconds(30)), 0) << word;
  }
}

TEST(ChildProcess, RunsUntilItIsKilled) {
  ChildProcess child = ChildProcess::Start(kProgram, {"sleep"});
  ASSERT_TRUE(child);
  const double start = NowSeconds();
  EXPECT_EQ(child.Wait(milliseconds(60)), std::nullopt);
  EXPECT_GE(NowSeconds() - start, 0.055);
  EXPECT_TRUE(child.Running());
  child.Kill();
  const std::optional<int> code = child.Wait(seconds(30));
  ASSERT_TRUE(code);
  EXPECT_NE(*code, 0);
  EXPECT_FALSE(child.Running());
}

TEST(ChildProcess, IsEmptyWithoutAProgram) {
  ChildProcess child = ChildProcess::Start(kProgram + "-that-is-not-there", {});
  EXPECT_FALSE(child);
  EXPECT_FALSE(child.Running());
  EXPECT_EQ(child.Wait(milliseconds(1)), std::nullopt);
  EXPECT_EQ(child.id(), 0u);
  child.Kill();
}

}  // namespace
}  // namespace qv::platform
