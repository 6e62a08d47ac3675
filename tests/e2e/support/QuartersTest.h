#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "e2e/support/Looks.h"
#include "e2e/support/ViewerTest.h"

namespace qv::e2e {

// A test that looks at the picture of the four quarters.
class QuartersTest : public ViewerTest {
 protected:
  const std::vector<std::string> kQuarters{"red", "green", "blue", "yellow"};

  // Starts the viewer and shows the four quarters.
  void ShowQuarters() {
    ASSERT_NO_FATAL_FAILURE(StartViewer());
    ASSERT_TRUE(SendQuarters(host_->link()));
    ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
    ASSERT_TRUE(AwaitFinalPicture());
    ASSERT_TRUE(SettlesTo(kQuarters));
  }

  // What the log tells may be a moment ahead of the screen, which still shows the picture before.
  bool SettlesTo(const std::vector<std::string>& quarters) {
    return Eventually([&] {
      const Screenshot earlier = window_->Shoot();
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      shot_ = window_->Shoot();
      area_ = FindPicture(shot_);
      return area_.width > 0 && QuarterColours(shot_, area_) == quarters &&
             DifferentPixels(earlier) == 0;
    });
  }

  // Between the last picture and one of the same size, without the rows of the statistics, which
  // tell other times; -1 if the sizes differ.
  int DifferentPixels(const Screenshot& before) const {
    if (shot_.width != before.width || shot_.height != before.height) return -1;
    int different = 0;
    for (int y = area_.top + 30; y < area_.top + area_.height; ++y) {
      for (int x = area_.left; x < area_.left + area_.width; ++x) {
        const Colour &a = before.At(x, y), &b = shot_.At(x, y);
        different += a.red != b.red || a.green != b.green || a.blue != b.blue;
      }
    }
    return different;
  }

  std::string LoggedSize() { return SizeIn(log_.Lines("picture shown: antialiased").back()); }
  // Of a line that tells of a picture: "WIDTHxHEIGHT,".
  static std::string SizeIn(const std::string& shown) {
    std::istringstream line(shown.substr(shown.find("shown: ")));
    std::string word, pass, size;
    line >> word >> pass >> size;
    return size;
  }

  std::string AreaSize() const {
    return std::to_string(area_.width) + 'x' + std::to_string(area_.height) + ',';
  }

  Screenshot shot_;
  Area area_;
};

}  // namespace qv::e2e
