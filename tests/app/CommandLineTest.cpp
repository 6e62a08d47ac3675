#include <gtest/gtest.h>
#include <wx/init.h>

#include <vector>

#include "app/CommandLine.h"

namespace qv {
namespace {

class CommandLine : public ::testing::Test {
 protected:
  static std::optional<HostAddress> Read(std::vector<wxString> words) {
    words.insert(words.begin(), "quorvane");
    std::vector<wxChar*> arguments;
    arguments.reserve(words.size());
    for (wxString& word : words) arguments.push_back(const_cast<wxChar*>(word.wc_str()));
    return HostFromCommandLine(static_cast<int>(arguments.size()), arguments.data());
  }

  wxInitializer library_;
};

TEST_F(CommandLine, TakesBothNumbersInEitherForm) {
  for (const auto& words : {std::vector<wxString>{"--windowhandle=4294967295", "--processid=17"},
                            std::vector<wxString>{"-h", "4294967295", "-p", "17"},
                            std::vector<wxString>{"-p:17", "house.skp", "-h:4294967295"}}) {
    const auto host = Read(words);
    ASSERT_TRUE(host) << words.front();
    EXPECT_EQ(host->window, 4294967295u);
    EXPECT_EQ(host->process, 17u);
  }
}

TEST_F(CommandLine, RefusesMissingAndUnusableNumbers) {
  EXPECT_FALSE(Read({}));
  EXPECT_FALSE(Read({"--windowhandle=123"}));
  EXPECT_FALSE(Read({"--processid=123"}));
  EXPECT_FALSE(Read({"--windowhandle=0x10", "--processid=5"}));
  EXPECT_FALSE(Read({"--windowhandle=5", "--processid=five"}));
  EXPECT_FALSE(Read({"--windowhandle=5", "--processid=4294967296"}));
}

}  // namespace
}  // namespace qv
