#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <utility>

#include "presets/LightEditor.h"
#include "presets/MemorySettings.h"

namespace qv {
namespace {

using Control = LightControl;

// Notes what reaches the renderer and the host, in order.
class FakeLights : public LightFrame {
 public:
  LightFactors GetLightFactors() override { return factors; }
  void SetLightFactors(const LightFactors& set) override { factors = set; }
  ImageValues GetImageValues() override { return image; }
  void SetImageValues(const ImageValues& set) override { image = set; }
  bool IsLemBaked() override { return lemBaked; }
  void AdjustPicture() override { Note("adjust"); }
  void RenderAnew() override { Note("render"); }
  void SendLightFactors(const LightFactors& sent) override {
    EXPECT_EQ(sent.sun, factors.sun);
    Note("light_factors");
  }
  void SendBrightness(float brightness, float contrast) override {
    EXPECT_EQ(brightness, image.brightness);
    EXPECT_EQ(contrast, image.contrast);
    Note("brightness2");
  }
  void SendGamma(float gamma) override {
    EXPECT_EQ(gamma, image.gamma);
    Note("gamma");
  }

  void Note(const char* what) { notes += (notes.empty() ? "" : " ") + std::string(what); }
  std::string TakeNotes() { return std::exchange(notes, {}); }

  LightFactors factors;
  ImageValues image;
  bool lemBaked = false;
  std::string notes;
};

class FakeControls : public LightControls {
 public:
  void SetSlider(Control control, int position) override { sliders[control] = position; }
  int Slider(Control control) const override { return sliders.at(control); }
  void SetText(Control control, const wxString& text) override { texts[control] = text; }
  wxString Text(Control control) const override { return texts.at(control); }
  void SetUseSkyColor(bool use) override { useSkyColor = use; }
  bool UseSkyColor() const override { return useSkyColor; }
  void SetNames(const std::vector<wxString>& shown) override { names = shown; }
  void SetName(const wxString& set) override { name = set; }
  wxString Name() const override { return name; }
  bool Confirm(const wxString& question) override {
    questions.push_back(question);
    return confirm;
  }

  std::map<Control, int> sliders;
  std::map<Control, wxString> texts;
  bool useSkyColor = false;
  std::vector<wxString> names, questions;
  wxString name;
  bool confirm = true;
};

class LightEditorTest : public testing::Test {
 protected:
  LightEditorTest() { editor_.Refresh(); }

  void Type(Control control, const char* text) {
    controls_.texts[control] = text;
    editor_.TextEntered(control);
  }
  void Drag(Control control, int position) {
    controls_.sliders[control] = position;
    editor_.SliderDragged(control);
  }

  FakeLights frame_;
  FakeControls controls_;
  std::vector<LightImageSettings> sets_;
  LightEditor editor_{frame_, controls_, sets_};
};

TEST_F(LightEditorTest, PutsALightFactorInForceWhenTheSliderIsLetGo) {
  Drag(Control::kAmbient, 25);
  EXPECT_EQ(controls_.texts[Control::kAmbient], "1.2");
  EXPECT_EQ(frame_.factors.ambient, 1);
  EXPECT_EQ(frame_.TakeNotes(), "");
  editor_.SliderSet(Control::kAmbient);
  EXPECT_EQ(frame_.factors.ambient, 1.25f);
  EXPECT_EQ(frame_.TakeNotes(), "light_factors render");
  editor_.SliderSet(Control::kAmbient);  // where it is already
  EXPECT_EQ(frame_.TakeNotes(), "");
}

TEST_F(LightEditorTest, AdjustsThePictureWhileASliderMoves) {
  Drag(Control::kBrightness, -37);
  EXPECT_EQ(frame_.image.brightness, -0.37f);
  EXPECT_EQ(controls_.texts[Control::kBrightness], "-37");
  EXPECT_EQ(frame_.TakeNotes(), "adjust brightness2");
  Drag(Control::kContrast, 100);
  EXPECT_EQ(frame_.image.contrast, 1);
  EXPECT_EQ(frame_.TakeNotes(), "adjust brightness2");
  Drag(Control::kGamma, 22);
  EXPECT_EQ(frame_.image.gamma, 2.2f);
  EXPECT_EQ(controls_.texts[Control::kGamma], "2.2");
  EXPECT_EQ(frame_.TakeNotes(), "adjust gamma");
}

TEST_F(LightEditorTest, BringsWhatIsTypedIntoTheRange) {
  const struct {
    Control control;
    const char* typed;
    const char* shown;
    int position;
  } cases[] = {
      {Control::kSun, "99", "5.0", 50},           {Control::kSun, "0", "0.1", 1},
      {Control::kSun, "inf", "5.0", 50},          {Control::kAmbient, "-1", "0.1", 1},
      {Control::kAmbient, "9", "3.0", 60},        {Control::kPoint, "0.7", "0.7", 7},
      {Control::kLem, "11", "10.0", 100},         {Control::kBrightness, "1000", "100", 100},
      {Control::kContrast, "-101", "-100", -100}, {Control::kGamma, "4", "3.0", 30},
  };
  for (const auto& [control, typed, shown, position] : cases) {
    Type(control, typed);
    EXPECT_EQ(controls_.texts[control], shown) << typed;
    EXPECT_EQ(controls_.sliders[control], position) << typed;
  }
  EXPECT_EQ(frame_.factors.sun, 5);
  EXPECT_EQ(frame_.factors.ambient, 3);
}

TEST_F(LightEditorTest, RestoresWhatIsNoNumberAndIgnoresWhatIsInForce) {
  Type(Control::kSun, "abc");
  Type(Control::kSun, "nan");
  EXPECT_EQ(controls_.texts[Control::kSun], "1.0");
  Type(Control::kSun, "1");
  Type(Control::kBrightness, "2.5");
  EXPECT_EQ(controls_.texts[Control::kBrightness], "0");
  Type(Control::kGamma, "1.00");
  EXPECT_EQ(frame_.TakeNotes(), "");

  // A field that is only passed through keeps the value behind its rounded text.
  frame_.factors.ambient = 1.05f;
  editor_.Refresh();
  editor_.TextLeft(Control::kAmbient);
  EXPECT_EQ(frame_.factors.ambient, 1.05f);
  EXPECT_EQ(frame_.TakeNotes(), "");
  controls_.texts[Control::kAmbient] = "1.5";
  editor_.TextLeft(Control::kAmbient);
  EXPECT_EQ(frame_.factors.ambient, 1.5f);
}

TEST_F(LightEditorTest, FindsEveryPositionAgain) {
  for (const LightRange& range : kLightRanges) {
    for (int position = range.minimum; position <= range.maximum; ++position) {
      controls_.sliders[range.control] = position;
      editor_.SliderSet(range.control);
      editor_.Refresh();
      EXPECT_EQ(controls_.sliders[range.control], position) << range.label;
    }
  }
}

TEST_F(LightEditorTest, ShowsWhatIsInForceAndSendsNothing) {
  frame_.factors = {2, 0.5f, 1e30f, 10, true};  // a host may keep anything
  frame_.image = {-0.5f, 0.25f, 1.8f};
  sets_ = {{"Night"}, {"Day"}};
  controls_.name = "Dusk";
  editor_.Refresh();
  EXPECT_EQ(controls_.sliders[Control::kSun], 20);
  EXPECT_EQ(controls_.sliders[Control::kAmbient], 10);
  EXPECT_EQ(controls_.sliders[Control::kPoint], 50);
  EXPECT_EQ(controls_.texts[Control::kLem], "10.0");
  EXPECT_EQ(controls_.texts[Control::kBrightness], "-50");
  EXPECT_EQ(controls_.sliders[Control::kGamma], 18);
  EXPECT_TRUE(controls_.useSkyColor);
  EXPECT_EQ(controls_.names, (std::vector<wxString>{"Night", "Day"}));
  EXPECT_EQ(controls_.name, "Dusk");
  EXPECT_EQ(frame_.TakeNotes(), "");

  controls_.useSkyColor = false;
  editor_.UseSkyColorSet();
  EXPECT_FALSE(frame_.factors.useSkyColorForAmbient);
  EXPECT_EQ(frame_.TakeNotes(), "light_factors render");
  EXPECT_TRUE(editor_.IsEnabled(Control::kLem));
  frame_.lemBaked = true;
  EXPECT_FALSE(editor_.IsEnabled(Control::kLem));
  EXPECT_TRUE(editor_.IsEnabled(Control::kSun));
}

TEST_F(LightEditorTest, KeepsNamedSets) {
  editor_.SaveSet();  // without a name
  EXPECT_TRUE(sets_.empty());
  Type(Control::kSun, "3");
  controls_.name = "Noon";
  editor_.SaveSet();
  ASSERT_EQ(sets_.size(), 1u);
  EXPECT_EQ(controls_.names, std::vector<wxString>{"Noon"});
  EXPECT_EQ(sets_[0].sun, 3);

  Type(Control::kSun, "4");
  controls_.name = "noon";
  controls_.confirm = false;
  editor_.SaveSet();
  EXPECT_EQ(sets_[0].sun, 3);
  controls_.confirm = true;
  editor_.SaveSet();
  EXPECT_EQ(sets_.size(), 1u);
  EXPECT_EQ(sets_[0].sun, 4);
  EXPECT_EQ(controls_.questions[0],
            "The specified name already exists. Do you want to overwrite it?");

  frame_.TakeNotes();
  editor_.ResetAll();
  EXPECT_EQ(controls_.name, "");
  EXPECT_EQ(frame_.factors.sun, 1);
  EXPECT_EQ(frame_.TakeNotes(), "adjust brightness2 gamma light_factors render");
  editor_.ChooseSet("NOON");
  EXPECT_EQ(frame_.factors.sun, 4);
  EXPECT_EQ(controls_.sliders[Control::kSun], 40);
  EXPECT_EQ(controls_.name, "Noon");
  editor_.ChooseSet("Night");
  EXPECT_EQ(controls_.name, "Noon");

  editor_.DeleteSet();
  EXPECT_EQ(controls_.questions.back(), "Are you sure you want to delete Noon ?");
  EXPECT_TRUE(sets_.empty());
  EXPECT_TRUE(controls_.names.empty());
  editor_.DeleteSet();
  EXPECT_EQ(controls_.questions.size(), 3u);
}

TEST(LightImageSettings, LieInGroupsOfTheSettingsStore) {
  MemorySettings settings;
  settings.Write("/Presets/LightImageSettings/Old/Sun", 2.5);
  settings.Write("/Presets/LightImageSettings/Old/UseSkyColorForAmbient", true);
  auto sets = LoadLightImageSettings(settings);
  ASSERT_EQ(sets.size(), 1u);
  EXPECT_EQ(sets[0].name, "Old");
  EXPECT_EQ(sets[0].sun, 2.5f);
  EXPECT_TRUE(sets[0].useSkyColorForAmbient);
  EXPECT_EQ(sets[0].gamma, 1);

  sets = {{"A/B"}, {".."}, {wxString::FromUTF8("\xE5\xA4\x9C")}, {"A%2FB"}};
  sets[1].ambient = 0.05f;
  sets[1].brightness = -0.29f;
  SaveLightImageSettings(settings, sets);
  EXPECT_EQ(settings.GetPath(), "");
  EXPECT_FALSE(settings.HasGroup("/Presets/LightImageSettings/Old"));
  double ambient = 0;
  EXPECT_TRUE(settings.Read("/Presets/LightImageSettings/%2E%2E/Ambient", &ambient));
  auto again = LoadLightImageSettings(settings);
  ASSERT_EQ(again.size(), 4u);
  for (const LightImageSettings& set : sets) {
    const auto found = std::find_if(again.begin(), again.end(),
                                    [&set](const auto& other) { return other.name == set.name; });
    ASSERT_NE(found, again.end()) << set.name;
    EXPECT_EQ(found->ambient, set.ambient);
    EXPECT_EQ(found->brightness, set.brightness);
  }
}

}  // namespace
}  // namespace qv
