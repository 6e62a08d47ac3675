#include <gtest/gtest.h>

#include <fstream>
#include <vector>

#include "platform/Ids.h"
#include "platform/PathText.h"

namespace qv::platform {
namespace {

namespace fs = std::filesystem;

constexpr char kText[] = "\xC3\xA4\xE6\x9C\xA8\xF0\x9D\x84\x9E";  // ä, 木, a clef beyond 16 bits

TEST(PathText, IsUtf8OnEverySystem) {
  const fs::path expected = u8"\u00e4\u6728\U0001D11E";
  EXPECT_EQ(PathFromUtf8(kText), expected);
  EXPECT_EQ(Utf8FromPath(expected), kText);
  EXPECT_EQ(Utf8FromPath(PathFromUtf8(std::string("a/") + kText).filename()), kText);
  EXPECT_EQ(PathFromUtf8(""), fs::path());
  // What is no text names something all the same, and throws nothing.
  for (const char* damage : {"\xE4", "\xC3", "a\xFF/b"}) {
    EXPECT_FALSE(Utf8FromPath(PathFromUtf8(damage)).empty()) << damage;
  }
}

TEST(PathText, NamesTheFilesOfTheSystem) {
  const fs::path folder =
      fs::temp_directory_path() / ("quorvane-" + std::to_string(NewGuid()[0]) + "-path");
  fs::create_directories(folder);
  std::ofstream(folder / PathFromUtf8(kText)) << "here";
  std::vector<fs::path> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename());
  }
  EXPECT_EQ(names, std::vector<fs::path>{u8"\u00e4\u6728\U0001D11E"});
  fs::remove_all(folder);
}

TEST(PathText, TakesPathsOfTheEnvironment) {
  EXPECT_EQ(PathFromEnvironment("QUORVANE_NO_SUCH_VARIABLE"), fs::path());
  EXPECT_NE(PathFromEnvironment("PATH"), fs::path());
}

}  // namespace
}  // namespace qv::platform
