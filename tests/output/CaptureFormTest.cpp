#include <gtest/gtest.h>
#include <wx/fileconf.h>
#include <wx/sstream.h>

#include <limits>

#include "output/CaptureForm.h"

namespace qv {
namespace {

const wxSize kView(800, 600);

class CaptureFormTest : public ::testing::Test {
 protected:
  CaptureForm Filled(const char* width, const char* height) {
    CaptureForm form(settings_);
    form.ownSize = true;
    form.width = width;
    form.height = height;
    return form;
  }

  long Stored(const char* name) {
    return settings_.ReadLong(wxString("/CaptureImageDialog/") + name, -77);
  }

  wxStringInputStream nothing_{""};
  wxFileConfig settings_{nothing_};
};

TEST_F(CaptureFormTest, BeginsWithWhatIsStored) {
  const CaptureForm fresh(settings_);
  EXPECT_EQ(fresh.format, 0);
  EXPECT_FALSE(fresh.ownSize);
  EXPECT_EQ(fresh.width, "640");
  EXPECT_EQ(fresh.height, "480");
  for (const long format : {3L, -1L, std::numeric_limits<long>::max()}) {
    settings_.Write("/CaptureImageDialog/Format", format);
    EXPECT_EQ(CaptureForm(settings_).format, 0) << format;
  }
  settings_.Write("/CaptureImageDialog/Format", 2L);
  settings_.Write("/CaptureImageDialog/Size", 1L);
  const CaptureForm stored(settings_);
  EXPECT_EQ(CaptureForm::FormatNames()[static_cast<std::size_t>(stored.format)], "BMP (*.bmp)");
  EXPECT_TRUE(stored.ownSize);
}

TEST_F(CaptureFormTest, RefusesWhatIsNoSizeAndStoresNothing) {
  const struct {
    const char *width, *height, *message;
  } cases[] = {{"1", "100", "Width and Height must be larger than 2."},
               {"100", "-5", "Width and Height must be larger than 2."},
               {"abc", "1", "Invalid parameters."},
               {"", "100", "Invalid parameters."},
               {"100", "3.5", "Invalid parameters."},
               {"9999999999", "100", "Invalid parameters."}};
  for (const auto& [width, height, message] : cases) {
    const auto problem = Filled(width, height).Accept(kView, settings_);
    ASSERT_TRUE(problem) << width << " by " << height;
    EXPECT_EQ(*problem, message) << width << " by " << height;
  }
  EXPECT_EQ(settings_.GetNumberOfEntries(true), 0u);
}

TEST_F(CaptureFormTest, StoresWhatIsAccepted) {
  CaptureForm form = Filled("2", "8192");
  form.format = 1;
  EXPECT_FALSE(form.Accept(kView, settings_));
  EXPECT_EQ(Stored("Width"), 2);
  EXPECT_EQ(Stored("Height"), 8192);
  EXPECT_EQ(Stored("Size"), 1);
  EXPECT_EQ(Stored("Format"), 1);
  EXPECT_EQ(form.GetSettings(kView)->width, 2);
  EXPECT_EQ(form.GetSettings(kView)->filter, "PNG (*.png)|*.png");

  // With the view's size the fields may hold what they like.
  form = Filled("abc", "1");
  form.ownSize = false;
  EXPECT_FALSE(form.Accept(kView, settings_));
  EXPECT_EQ(form.GetSettings(kView)->width, 800);
  EXPECT_EQ(form.GetSettings(kView)->height, 600);
  EXPECT_EQ(Stored("Size"), 0);
  EXPECT_EQ(Stored("Width"), 2) << "as it was";
}

TEST_F(CaptureFormTest, CompletesNamesWithoutAnExtension) {
  const wxString filter = "PNG (*.png)|*.png";
  EXPECT_EQ(CompleteFileName("view", filter), "view.png");
  EXPECT_EQ(CompleteFileName("view.", filter), "view.png");
  EXPECT_EQ(CompleteFileName("view.bmp", filter), "view.bmp");
  EXPECT_EQ(CompleteFileName("/a.b/view", filter), "/a.b/view.png");
}

}  // namespace
}  // namespace qv
