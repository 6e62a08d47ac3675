#include <sstream>

#include "host/app/BackgroundWish.h"
#include "host/app/HostProgram.h"
#include "tests/host/TestFolder.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

class BackgroundWishes : public TestFolder {
 protected:
  void SetUp() override {
    for (const char* name : {"asphalt_morning", "meadow", "zoo"}) {
      fs::create_directories(folder() / "CubeMaps" / name);
    }
  }

  // The two words as they lie in the property, little-endian.
  std::vector<int> Words(const std::string& name) {
    std::vector<int> bytes;
    for (const std::byte byte : BackgroundProperty(name, folder())) {
      bytes.push_back(static_cast<int>(byte));
    }
    return bytes;
  }
};

TEST_F(BackgroundWishes, AreNumbersOfCubeMapsAndWeather) {
  EXPECT_EQ(Words("meadow"), (std::vector<int>{8, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(Words("ClearSky"), (std::vector<int>{0, 0, 0, 0, 255, 255, 255, 255}));
  EXPECT_EQ(Words("Cloudy2"), (std::vector<int>{4, 0, 0, 0, 255, 255, 255, 255}));
}

TEST_F(BackgroundWishes, ThatCannotBeFulfilledStartNoViewer) {
  std::ostringstream output, errors;
  Console console(output, errors);
  Options options;
  options.model = WriteModel().string();
  // No program: an attempt to start it would be told.
  options.viewer = Write("viewer", "").string();
  options.background = "moon";
  HostProgram program(options, console, [] { return 0; });
  EXPECT_EQ(program.Run(), HostProgram::kFailure);
  EXPECT_NE(errors.str().find("there is no background \"moon\""), std::string::npos);
  EXPECT_EQ(errors.str().find("can't be started"), std::string::npos);
}

}  // namespace
}  // namespace qv::host
