#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "platform/Ids.h"
#include "platform/SharedMemory.h"

namespace qv::platform {
namespace {

std::string Name(const char* what) {
  return std::string("QV_Test_") + what + "_" + std::to_string(CurrentProcessId());
}

bool AllZero(const SharedMemory& memory) {
  const auto bytes = memory.bytes();
  return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == std::byte{0}; });
}

TEST(SharedMemory, IsZeroedAndInWholePages) {
  const std::pair<std::size_t, std::size_t> kSizes[] = {
      {1, 4096}, {40, 4096}, {4096, 4096}, {4097, 8192}, {1 << 20, 1 << 20}};
  for (const auto& [asked, given] : kSizes) {
    SharedMemory unnamed = SharedMemory::CreateUnnamed(asked);
    SharedMemory named = SharedMemory::Create(Name("Pages"), asked);
    ASSERT_TRUE(unnamed);
    ASSERT_TRUE(named);
    EXPECT_EQ(unnamed.bytes().size(), given);
    EXPECT_EQ(named.bytes().size(), given);
    EXPECT_TRUE(AllZero(unnamed));
    EXPECT_TRUE(AllZero(named));
  }
}

TEST(SharedMemory, IsSeenByWhoeverOpensIt) {
  SharedMemory made = SharedMemory::Create(Name("Seen"), 5000);
  SharedMemory opened = SharedMemory::Open(Name("Seen"));
  ASSERT_TRUE(made);
  ASSERT_TRUE(opened);
  ASSERT_EQ(opened.bytes().size(), made.bytes().size());
  made.bytes()[4999] = std::byte{17};
  EXPECT_EQ(opened.bytes()[4999], std::byte{17});
  // The rest of the last page is shared too: records may overrun their nominal size.
  opened.bytes()[8191] = std::byte{18};
  EXPECT_EQ(made.bytes()[8191], std::byte{18});
}

TEST(SharedMemory, NameGoesWithItsCreatorAndMemoryStaysWithItsUsers) {
  const std::string name = Name("Goes");
  SharedMemory user;
  {
    SharedMemory made = SharedMemory::Create(name, 10);
    ASSERT_TRUE(made);
    EXPECT_FALSE(SharedMemory::Create(name, 10));
    made.bytes()[0] = std::byte{5};
    SharedMemory moved = std::move(made);
    user = SharedMemory::Open(name);
    EXPECT_TRUE(user);
  }
  EXPECT_EQ(user.bytes()[0], std::byte{5});
  user = {};
  EXPECT_FALSE(SharedMemory::Open(name));
}

TEST(SharedMemory, IsEmptyWhereThereIsNone) {
  EXPECT_FALSE(SharedMemory());
  EXPECT_FALSE(SharedMemory::Open(Name("NotThere")));
  EXPECT_FALSE(SharedMemory::CreateUnnamed(0));
  EXPECT_FALSE(SharedMemory::Create(Name("Nothing"), 0));
  EXPECT_FALSE(SharedMemory::Adopt(-1));
  EXPECT_TRUE(SharedMemory().bytes().empty());
  EXPECT_EQ(SharedMemory().native(), -1);
  // More than any machine has.
  EXPECT_FALSE(SharedMemory::CreateUnnamed(std::size_t{1} << 60));
  EXPECT_FALSE(SharedMemory::Create(Name("TooMuch"), ~std::size_t{0}));
  EXPECT_FALSE(SharedMemory::Open(Name("TooMuch")));
}

}  // namespace
}  // namespace qv::platform
