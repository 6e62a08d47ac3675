#include <gtest/gtest.h>
#include <wx/init.h>
#include <wx/translation.h>

#include <string>

#include "app/StatusTexts.h"
#include "app/Translations.h"

namespace qv {
namespace {

class Translations : public testing::Test {
 protected:
  static std::string In(const char* language, const char* text) {
    LoadTranslations(QUORVANE_CATALOGUES, language);
    return wxGetTranslation(text).utf8_string();
  }

  wxInitializer library_;
};

TEST_F(Translations, AreThoseOfTheLanguage) {
  ASSERT_TRUE(library_.IsOk());
  EXPECT_EQ(In("de", "Reload Data"), "Daten neu laden");
  EXPECT_EQ(EyeHeightText(70).utf8_string(), "Kamerahöhe: 70.0\"");
  // A country without a catalogue of its own has that of its language.
  EXPECT_EQ(In("de_AT", "Reload Data"), "Daten neu laden");
  EXPECT_EQ(In("ja", "Reload Data"), "データを再読み込み");
  // Buttons that the window library makes.
  EXPECT_EQ(In("de", "&Cancel"), "Ab&brechen");
}

TEST_F(Translations, LeaveALanguageWithoutACatalogueInEnglish) {
  ASSERT_TRUE(library_.IsOk());
  EXPECT_EQ(In("cy", "Reload Data"), "Reload Data");
  EXPECT_EQ(In("en", "Reload Data"), "Reload Data");
}

}  // namespace
}  // namespace qv
