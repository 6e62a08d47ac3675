#include "host/app/FolderStamp.h"
#include "tests/host/app/TestFolder.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

class FolderStamps : public TestFolder {
 protected:
  static void MakeNewer(const fs::path& path) {
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(5));
  }
};

TEST_F(FolderStamps, ChangeWithTheModelAndWhatLiesBesideIt) {
  const fs::path model = WriteModel();
  FolderStamp before = StampOf(model);
  EXPECT_EQ(StampOf(model), before);
  const auto changed = [&] {
    const FolderStamp now = StampOf(model);
    const bool differs = now != before;
    before = now;
    return differs;
  };
  MakeNewer(model);
  EXPECT_TRUE(changed());
  const fs::path materials = Write("model.mtl", "");
  EXPECT_TRUE(changed());
  MakeNewer(materials);
  MakeNewer(materials);
  EXPECT_TRUE(changed());
  fs::remove(materials);
  EXPECT_TRUE(changed());
}

TEST_F(FolderStamps, DoNotChangeWithTheHostsOwnFiles) {
  const fs::path model = WriteModel();
  const FolderStamp before = StampOf(model);
  MakeNewer(Write("model.obj.quorvane.json", ""));
  MakeNewer(Write("model.obj.quorvane.json.new", ""));
  EXPECT_EQ(StampOf(model), before);
}

TEST_F(FolderStamps, OfNoFileIsNoFault) {
  EXPECT_EQ(StampOf(folder() / "none" / "model.obj"), StampOf(folder() / "none" / "model.obj"));
}

}  // namespace
}  // namespace qv::host
