#include "host/scenefile/Archive.h"
#include "host/scenefile/SceneFileError.h"
#include "tests/host/model/ModelFolder.h"
#include "tests/host/scenefile/ZipFile.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

class Archives : public ModelFolder {
 protected:
  // What is said about unpacking "models/a.obj"; empty if it went well.
  std::string Message(const fs::path& archive, const ArchiveLimits& limits = {}) {
    try {
      UnpackFolderOf(archive, "models/a.obj", folder() / "out" / "deep", limits);
      return "";
    } catch (const SceneFileError& error) {
      return error.what();
    }
  }
};

TEST_F(Archives, GiveTheFolderOfAModelAndNothingElse) {
  const fs::path archive = folder() / "things.zip";
  const std::string large(300000, 'x');
  WriteZip(archive, {{"readme", "no"},
                     {"models/a.obj", "the model"},
                     {"models/maps/leaf.png", large},
                     {"others/b.obj", "no"}});
  const fs::path out = folder() / "out";
  const fs::path model = UnpackFolderOf(archive, "models/a.obj", out);
  EXPECT_EQ(model, out / "models" / "a.obj");
  EXPECT_EQ(TextOf(model), "the model");
  EXPECT_EQ(TextOf(out / "models" / "maps" / "leaf.png"), large);
  EXPECT_FALSE(fs::exists(out / "readme"));
  EXPECT_FALSE(fs::exists(out / "others"));
}

TEST_F(Archives, WithANameThatLeadsOutAreRefused) {
  for (const char* name : {"models/../../escaped", "../escaped", "models/maps/../../../escaped",
                           "/tmp/escaped", "C:/escaped", "models\\..\\escaped", "models/.."}) {
    const fs::path archive = folder() / "bad.zip";
    WriteZip(archive, {{name, "gotcha"}, {"models/a.obj", "the model"}});
    EXPECT_NE(Message(archive).find("leads out of its folder"), std::string::npos)
        << name << ": " << Message(archive);
    EXPECT_FALSE(fs::exists(folder() / "escaped"));
    EXPECT_FALSE(fs::exists(folder() / "out" / "escaped"));
  }
}

TEST_F(Archives, BoundWhatTheyWrite) {
  const fs::path archive = folder() / "large.zip";
  WriteZip(archive, {{"models/a.obj", std::string(6000, 'a')},
                     {"models/b", std::string(6000, 'b')},
                     {"models/c", ""}});
  EXPECT_EQ(Message(archive, {.bytesOfFile = 6000, .bytesOfAll = 12000, .entries = 3}), "");
  const std::string more = "holds more than is read of one";
  EXPECT_NE(Message(archive, {.bytesOfFile = 5999}).find(more), std::string::npos);
  EXPECT_NE(Message(archive, {.bytesOfAll = 11999}).find(more), std::string::npos);
  EXPECT_NE(Message(archive, {.entries = 2}).find("too many files"), std::string::npos);
}

TEST_F(Archives, SayWhatIsWrongWithThem) {
  EXPECT_NE(Message(folder() / "none.zip").find("there is no file"), std::string::npos);
  EXPECT_NE(Message(Write("text.zip", "no archive")).find("is no zip archive"), std::string::npos);

  const fs::path archive = folder() / "good.zip";
  const std::string content(5000, 'q');
  WriteZip(archive, {{"models/other.obj", content}});
  EXPECT_NE(Message(archive).find("holds no file \"models/a.obj\""), std::string::npos);

  // A byte of the compressed content turned over.
  WriteZip(archive, {{"models/a.obj", content}});
  std::string bytes = TextOf(archive);
  bytes[30 + std::string("models/a.obj").size() + 3] ^= 0x10;
  EXPECT_NE(Message(Write("damaged.zip", bytes)).find("damaged"), std::string::npos);
  // The end missing.
  EXPECT_NE(Message(Write("short.zip", TextOf(archive).substr(0, 60))), "");
}

}  // namespace
}  // namespace qv::host
