#include <thread>

#include "host/app/PropertyStore.h"
#include "tests/host/TestFolder.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

PropertyStore::Value Bytes(const std::vector<int>& numbers) {
  PropertyStore::Value value;
  for (const int number : numbers) value.push_back(static_cast<std::byte>(number));
  return value;
}

class Properties : public TestFolder {
 protected:
  fs::path model() const { return folder() / "house.ifc"; }
  fs::path sidecar() const { return folder() / "house.ifc.quorvane.json"; }
  fs::path userFolder() const { return folder() / "user"; }
  PropertyStore Open() const { return PropertyStore(model(), userFolder()); }

  // All files below the folder.
  std::size_t FileCount() const {
    std::size_t count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder())) {
      count += entry.is_regular_file() ? 1 : 0;
    }
    return count;
  }
};

TEST_F(Properties, AreThereTheNextTime) {
  const auto value = Bytes({0, 1, 127, 128, 255, 10, 34, 92});
  {
    PropertyStore store = Open();
    EXPECT_FALSE(store.Get("presets"));
    EXPECT_TRUE(store.Set("presets", Bytes({9})));
    EXPECT_TRUE(store.Set("presets", value));
    EXPECT_TRUE(store.Set("empty", {}));
    EXPECT_TRUE(store.Set("a \"name\" in \xc3\xa4\n", Bytes({1})));
    EXPECT_TRUE(store.Set("no UTF-8 \xff\xfe", Bytes({2})));
  }
  const PropertyStore store = Open();
  EXPECT_EQ(store.Get("presets"), value);
  EXPECT_EQ(store.Get("empty"), PropertyStore::Value());
  EXPECT_EQ(store.Get("a \"name\" in \xc3\xa4\n"), Bytes({1}));
  EXPECT_FALSE(store.Get("gamma"));
  EXPECT_TRUE(store.warnings().empty());
  // One file, no half-written one beside it.
  EXPECT_EQ(FileCount(), 1u);
  EXPECT_EQ(store.file(), sidecar());
}

TEST_F(Properties, AreKeptWhateverLettersTheModelsNameHas) {
  const fs::path house = Write(fs::path(u8"\u00e4\u6728") / u8"h\u00e4us.ifc", "");
  EXPECT_TRUE(PropertyStore(house, userFolder()).Set("gamma", Bytes({3})));
  EXPECT_TRUE(fs::is_regular_file(house.parent_path() / u8"h\u00e4us.ifc.quorvane.json"));
  EXPECT_EQ(PropertyStore(house, userFolder()).Get("gamma"), Bytes({3}));
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& entry : fs::directory_iterator(house.parent_path())) ++files;
  EXPECT_EQ(files, 2u) << "nothing under a garbled name";
}

TEST_F(Properties, AreReadFromTheFormThatIsPromised) {
  Write("house.ifc.quorvane.json", R"({"format": "quorvane properties", "version": 1,
      "properties": {"gamma": "0000803f"}})");
  EXPECT_EQ(Open().Get("gamma"), Bytes({0, 0, 128, 63}));
}

TEST_F(Properties, DamagedFileIsKeptAsideAndTold) {
  for (const char* damage :
       {"", "{", "[]", "null", R"({"format": 7})",
        R"({"format": "quorvane properties", "properties": {"gamma": "0g"}})",
        R"({"format": "quorvane properties", "properties": {"gamma": "000"}})",
        R"({"format": "quorvane properties", "properties": {"gamma": 5}})",
        R"({"format": "quorvane properties", "properties": []})", "\xff\xfe\x00 binary"}) {
    Write("house.ifc.quorvane.json", damage);
    PropertyStore store = Open();
    EXPECT_FALSE(store.Get("gamma")) << damage;
    ASSERT_EQ(store.warnings().size(), 1u) << damage;
    EXPECT_EQ(TextOf(sidecar().string() + ".broken"), damage);
    fs::remove(sidecar().string() + ".broken");
    EXPECT_TRUE(store.Set("gamma", Bytes({1})));
    EXPECT_EQ(Open().Get("gamma"), Bytes({1}));
  }
}

TEST_F(Properties, OfALaterVersionAreLeftAlone) {
  const std::string later =
      R"({"format": "quorvane properties", "version": 2, "properties": {"gamma": "00"}})";
  Write("house.ifc.quorvane.json", later);
  PropertyStore store = Open();
  EXPECT_FALSE(store.Get("gamma"));
  EXPECT_EQ(store.warnings().size(), 1u);
  EXPECT_TRUE(store.Set("gamma", Bytes({1})));
  EXPECT_EQ(TextOf(sidecar().string() + ".later"), later);

  // Also what comes while the store is in use.
  Write("house.ifc.quorvane.json", later + " ");
  EXPECT_TRUE(store.Set("presets", Bytes({2})));
  EXPECT_EQ(store.warnings().size(), 2u);
  EXPECT_EQ(TextOf(sidecar().string() + ".later"), later);
  EXPECT_EQ(TextOf(sidecar().string() + ".later2"), later + " ");
  EXPECT_EQ(Open().Get("gamma"), Bytes({1}));
  EXPECT_EQ(Open().Get("presets"), Bytes({2}));
}

TEST_F(Properties, OfTwoProgramsWithTheSameModelBothStay) {
  PropertyStore first = Open(), second = Open();
  EXPECT_TRUE(first.Set("presets", Bytes({1})));
  EXPECT_TRUE(second.Set("gamma", Bytes({2})));
  EXPECT_TRUE(first.Set("background", Bytes({3})));
  EXPECT_EQ(first.Get("gamma"), Bytes({2}));
  const PropertyStore next = Open();
  EXPECT_EQ(next.Get("presets"), Bytes({1}));
  EXPECT_EQ(next.Get("gamma"), Bytes({2}));
  EXPECT_EQ(next.Get("background"), Bytes({3}));
}

TEST_F(Properties, OfTwoProgramsStayWhenThePlaceBesideTheModelCanBeWrittenAgain) {
  fs::create_directory(sidecar());
  Write("house.ifc.quorvane.json/in the way", "");
  Open().Set("gamma", Bytes({1}));
  PropertyStore first = Open(), second = Open();
  fs::remove_all(sidecar());
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_TRUE(first.Set("gamma", Bytes({2})));
  EXPECT_TRUE(second.Set("presets", Bytes({3})));
  EXPECT_EQ(Open().Get("gamma"), Bytes({2}));
  EXPECT_EQ(Open().Get("presets"), Bytes({3}));
}

// A folder of the file's name stands for a place that can't be written, whoever runs the test.
TEST_F(Properties, GoToTheUsersFolderWhereTheModelsCannotBeWritten) {
  fs::create_directory(sidecar());
  Write("house.ifc.quorvane.json/in the way", "");
  {
    PropertyStore store = Open();
    EXPECT_TRUE(store.Set("gamma", Bytes({5})));
    EXPECT_EQ(store.file().parent_path(), userFolder());
  }
  EXPECT_EQ(Open().Get("gamma"), Bytes({5}));
  // Another model of the same name elsewhere has its own.
  EXPECT_FALSE(PropertyStore(folder() / "other" / "house.ifc", userFolder()).Get("gamma"));
}

TEST_F(Properties, NewerOfTheTwoFilesCounts) {
  fs::create_directory(sidecar());
  Write("house.ifc.quorvane.json/in the way", "");
  Open().Set("gamma", Bytes({1}));
  fs::remove_all(sidecar());
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  PropertyStore store = Open();
  EXPECT_EQ(store.Get("gamma"), Bytes({1}));
  store.Set("gamma", Bytes({2}));
  EXPECT_EQ(Open().Get("gamma"), Bytes({2}));
  EXPECT_EQ(Open().file(), sidecar());
}

TEST_F(Properties, AreKeptForTheSessionWhereNothingCanBeWritten) {
  PropertyStore store(folder() / "none" / "house.ifc", folder() / "none.txt" / "\0");
  Write("none.txt", "");
  EXPECT_FALSE(store.Set("gamma", Bytes({1})));
  EXPECT_EQ(store.Get("gamma"), Bytes({1}));
}

TEST_F(Properties, MayBeSetAndReadByManyThreads) {
  PropertyStore store = Open();
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&store, i] {
      for (int j = 0; j < 20; ++j) {
        store.Set("value " + std::to_string(i), Bytes({j}));
        store.Get("value " + std::to_string((i + 1) % 4));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(Open().Get("value " + std::to_string(i)), Bytes({19}));
  }
}

}  // namespace
}  // namespace qv::host
