#include <gtest/gtest.h>

#include "app/BackgroundChoice.h"

namespace qv {
namespace {

using List = std::vector<std::wstring>;

const List kCubeMaps{L"asphalt", L"hills", L"meadow"};
const List kWeather{L"<ClearSky>", L"<Fine1>", L"<Fine2>", L"<Cloudy1>", L"<Cloudy2>"};

BackgroundChoice Open(std::int32_t type, std::int32_t cubeMap, const List& cubeMaps = kCubeMaps) {
  sky::BackgroundTypes types;
  sky::FillBackgroundTypes(types, [](const char* name) {
    return L"<" + std::wstring(name, name + std::char_traits<char>::length(name)) + L">";
  });
  return {types, cubeMaps, type, cubeMap};
}

TEST(BackgroundChoice, OpensWithWhatIsShown) {
  const BackgroundChoice texture = Open(8, 2);
  EXPECT_TRUE(texture.IsTexture());
  EXPECT_EQ(texture.List(), kCubeMaps);
  EXPECT_EQ(texture.Selection(), 2);

  const BackgroundChoice weather = Open(3, 2);
  EXPECT_FALSE(weather.IsTexture());
  EXPECT_EQ(weather.List(), kWeather);
  EXPECT_EQ(weather.Selection(), 3);
  // Agreed to without a change, it is what it was.
  EXPECT_EQ(weather.BackgroundType(), 3);
  EXPECT_EQ(weather.CubeMapIndex(), 2);
}

TEST(BackgroundChoice, GoesFromTextureToTheFirstFineWeatherWhateverItWas) {
  BackgroundChoice choice = Open(4, 1);
  EXPECT_FALSE(choice.ChooseSimulation()) << "it is already";
  EXPECT_EQ(choice.BackgroundType(), 4);
  EXPECT_TRUE(choice.ChooseTexture());
  EXPECT_FALSE(choice.ChooseTexture());
  EXPECT_EQ(choice.Selection(), 1);
  EXPECT_TRUE(choice.ChooseSimulation());
  EXPECT_EQ(choice.BackgroundType(), 1);
  EXPECT_EQ(choice.List()[static_cast<std::size_t>(choice.Selection())], L"<Fine1>");
}

TEST(BackgroundChoice, TakesPlacesOfTheListThatIsShown) {
  BackgroundChoice choice = Open(2, 0);
  choice.Choose(4);
  EXPECT_EQ(choice.BackgroundType(), 4);
  choice.Choose(-1);
  choice.Choose(5);  // the place of the type "Texture", were it listed
  EXPECT_EQ(choice.BackgroundType(), 4);
  EXPECT_EQ(choice.CubeMapIndex(), 0);

  choice.ChooseTexture();
  choice.Choose(2);
  choice.Choose(3);
  EXPECT_EQ(choice.BackgroundType(), 8);
  EXPECT_EQ(choice.CubeMapIndex(), 2);
}

TEST(BackgroundChoice, ShowsTypesAndCubeMapsThatItDoesNotKnow) {
  BackgroundChoice strange = Open(6, 0);
  ASSERT_EQ(strange.List().size(), 6u);
  EXPECT_EQ(strange.List()[static_cast<std::size_t>(strange.Selection())], L"");
  strange.Choose(1);
  EXPECT_EQ(strange.BackgroundType(), 1);
  EXPECT_EQ(Open(8, 3).Selection(), -1);
  const BackgroundChoice empty = Open(8, 0, {});
  EXPECT_TRUE(empty.List().empty());
  EXPECT_EQ(empty.Selection(), -1);
}

}  // namespace
}  // namespace qv
