#include <windows.h>

#include "e2e/support/QuartersTest.h"

namespace qv::e2e {
namespace {

// The system tells a window when a hand takes hold of its border and when it lets go.
class SizeMove : public QuartersTest {
 protected:
  static void Tell(UINT message) {
    const HWND frame = FindWindowW(nullptr, L"Quorvane");
    ASSERT_NE(frame, nullptr);
    DWORD_PTR result = 0;
    ASSERT_NE(SendMessageTimeoutW(frame, message, 0, 0, SMTO_NORMAL, 20000, &result), 0);
  }
};

TEST_F(SizeMove, PictureFollowsWhenTheBorderIsLetGo) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  const std::size_t pictures = log_.Lines("picture shown").size();
  const std::size_t known = FinalPictures();
  ASSERT_NO_FATAL_FAILURE(Tell(WM_ENTERSIZEMOVE));
  for (const int width : {500, 530, 560}) {
    window_->Resize(width, 420);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
  }
  // Meanwhile the one that is there is stretched.
  EXPECT_EQ(log_.Lines("picture shown").size(), pictures);
  EXPECT_TRUE(SettlesTo(kQuarters));
  EXPECT_NE(LoggedSize(), AreaSize());

  ASSERT_NO_FATAL_FAILURE(Tell(WM_EXITSIZEMOVE));
  ASSERT_TRUE(AwaitFinalPicture(known));
  ASSERT_TRUE(SettlesTo(kQuarters));
  EXPECT_EQ(LoggedSize(), AreaSize());
  EXPECT_EQ(area_.width, 560);

  // Once more without a hand: every size is followed.
  window_->Resize(600, 420);
  ASSERT_TRUE(AwaitFinalPicture(known + 1));
}

}  // namespace
}  // namespace qv::e2e
