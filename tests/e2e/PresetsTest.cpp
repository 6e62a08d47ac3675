#include <algorithm>
#include <fstream>
#include <sstream>

#include "e2e/support/Programs.h"
#include "e2e/support/Typing.h"
#include "e2e/support/ViewerTest.h"
#include "platform/ChildProcess.h"

namespace qv::e2e {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// A red wall in the north, a green one in the east and a blue one in the south, with a view of each
// from the middle. In the right half of each view stands so much glass that frames are slow.
std::string Scene() {
  constexpr int kPanes = 20;
  std::ostringstream scene;
  scene << R"({"format": "quorvane scene", "version": 1, "unit": "m",
    "place": {"latitude": 49, "longitude": 8.4, "timezone": 1, "time": "2024-06-21T12:00"},
    "views": [{"name": "Red", "eye": [0, 0, 0], "target": [0, 8, 0], "fov": 45},
              {"name": "Green", "eye": [0.3, 0, 0], "target": [8, 0, 0], "fov": 45},
              {"name": "Blue", "eye": [0, 0.3, 0], "target": [0, -8, 0], "fov": 45}],
    "shapes": [)";
  const auto pane = [&scene](const char* size, double x, double y) {
    scene << R"({"kind": "box", "size": [)" << size << R"(, 5], "at": [)" << x << ',' << y
          << R"(, -2.5], "material": {"color": [0.9, 0.9, 0.9], "opacity": 0.02}},)";
  };
  for (int i = 0; i < kPanes; ++i) {
    const double distance = 3 + 0.02 * i;
    pane("5, 0.01", 2.6, distance);
    pane("0.01, 5", distance, -2.6);
    pane("5, 0.01", -2.6, -distance);
  }
  scene << R"({"kind": "box", "size": [16, 0.2, 12], "at": [0, 8, -6],
               "material": {"color": [0.6, 0.05, 0.05]}},
              {"kind": "box", "size": [0.2, 16, 12], "at": [8, 0, -6],
               "material": {"color": [0.05, 0.6, 0.05]}},
              {"kind": "box", "size": [16, 0.2, 12], "at": [0, -8, -6],
               "material": {"color": [0.05, 0.05, 0.6]}}]})";
  return scene.str();
}

Screenshot LeftPart(const Screenshot& shot, int width) {
  Screenshot part{std::min(width, shot.width), shot.height, {}};
  for (int y = 0; y < part.height; ++y) {
    for (int x = 0; x < part.width; ++x) part.pixels.push_back(shot.At(x, y));
  }
  return part;
}

// A viewer that the host program has started, which keeps what belongs to the model in a file.
class Presets : public ViewerTest {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(ViewerTest::SetUp());
    std::ofstream(scene_) << Scene();
  }

  void TearDown() override {
    // A viewer outlives its host.
    if (program_ && program_.Running() && window_) window_->Close();
    if (program_ && !Eventually([this] { return !program_.Running(); }, kSoon)) program_.Kill();
    ViewerTest::TearDown();
  }

  void Start() {
    const std::size_t known = Log("picture shown: base");
    log_.Capture([this] {
      // From the middle, so that the walls fill the view.
      program_ = platform::ChildProcess::Start(
          HostProgram(), {"--viewer", ViewerProgram(), "--eye", "0,0,0", "--target", "0,315,0",
                          "--fov", "45", scene_.string()});
    });
    ASSERT_TRUE(program_);
    window_ = ViewerWindow::Find(kPatience);
    ASSERT_TRUE(window_);
    ASSERT_TRUE(log_.WaitFor("picture shown: base", known, kPatience));
  }

  std::size_t Log(const std::string& part) const { return log_.Lines(part).size(); }

  std::string StoredText() const {
    std::ifstream file(scene_.string() + ".quorvane.json");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  static std::unique_ptr<ViewerWindow> Panel(const std::string& title) {
    auto panel = ViewerWindow::Find(kSoon, title);
    std::this_thread::sleep_for(milliseconds(500));
    return panel;
  }

  // Clicks the picture of that name in the pixels of a panel above `bottom` and left of `right`.
  static void ClickPicture(ViewerWindow& panel, const std::string& name, int bottom, int right) {
    // Away from what shows hints or looks different under the pointer.
    panel.MovePointer(right, panel.Place().height - 10);
    std::optional<Point> found;
    ASSERT_TRUE(Eventually(
        [&] {
          found = FindTool(LeftPart(panel.Shoot(), right), bottom, name);
          return found.has_value();
        },
        kPatience))
        << name;
    panel.Click(found->x, found->y);
    std::this_thread::sleep_for(milliseconds(300));
  }
  // Clicks one of the rows with that picture, so that the list has the keyboard.
  static void ClickRow(ViewerWindow& panel, const std::string& name) {
    constexpr int kUnused = 30;  // of the list; another window may reach up there
    constexpr int kIcons = 30;
    ClickPicture(panel, name, panel.Place().height - kUnused, kIcons);
  }
  static void ClickPresetTool(ViewerWindow& panel, const std::string& name) {
    ClickPicture(panel, name, ViewerWindow::ToolRows(), panel.Place().width);
  }

  // Accepts what a dialog proposes.
  void AcceptName() {
    ASSERT_TRUE(AwaitDialog("Create New Preset"));
    PressKey(Key::kEnter);
    ASSERT_TRUE(Leaves("Create New Preset"));
    std::this_thread::sleep_for(milliseconds(300));
  }

  // Opens the last row by the keyboard, which the list has.
  void OpenLast(int up = 0) {
    PressKey(Key::kEnd);
    for (int i = 0; i < up; ++i) PressKey(Key::kUp);
    PressKey(Key::kEnter);
  }

  // What the view shows of the wall before it, left of the glass and of the panels.
  Colour Wall() const {
    const Screenshot shot = window_->Shoot();
    return shot.At(shot.width / 4, shot.height * 2 / 3);
  }

  const std::filesystem::path scene_ = display_.folder() / "scene.json";
  platform::ChildProcess program_;
};

void Press(Key key, int times) {
  for (int i = 0; i < times; ++i) PressKey(key);
}

void ReplaceText(const std::string& text) {
  PressWithControl('a');
  TypeText(text);
  PressKey(Key::kEnter);
}

int Distance(const Colour& a, const Colour& b) {
  return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue);
}

TEST_F(Presets, AreThereTheNextTimeAndPlayInRealTime) {
  ASSERT_NO_FATAL_FAILURE(Start());
  ASSERT_NO_FATAL_FAILURE(ClickTool("View"));
  auto panel = Panel("Presets");
  ASSERT_TRUE(panel);
  ASSERT_NO_FATAL_FAILURE(ClickPresetTool(*panel, "ImportScenes"));
  ASSERT_NO_FATAL_FAILURE(ClickRow(*panel, "ViewSmall"));

  // A view of each wall, made of what is seen.
  std::size_t finals = 0;
  for (const std::string wall : {"red", "green", "blue"}) {
    const std::size_t shown = Log("preset shown");
    finals = FinalPictures();
    // The imported views stand above those that are made meanwhile.
    OpenLast(2);
    ASSERT_TRUE(log_.WaitFor("preset shown", shown));
    ASSERT_TRUE(Eventually([&] { return NameOf(Wall()) == wall; })) << wall;
    ASSERT_NO_FATAL_FAILURE(ClickPresetTool(*panel, "View"));
    ASSERT_NO_FATAL_FAILURE(AcceptName());
    ASSERT_NO_FATAL_FAILURE(ClickRow(*panel, "ViewSmall"));
  }

  // The three of them become an animation and a tour.
  PressKey(Key::kEnd);
  panel->KeyDown(kShift);
  Press(Key::kUp, 2);
  panel->KeyUp(kShift);
  std::this_thread::sleep_for(milliseconds(300));
  ASSERT_NO_FATAL_FAILURE(ClickPresetTool(*panel, "KeyFrameAnimation_KeyFrames"));
  ASSERT_NO_FATAL_FAILURE(AcceptName());
  ASSERT_NO_FATAL_FAILURE(ClickPresetTool(*panel, "KeyFrameAnimation_Tour"));
  ASSERT_NO_FATAL_FAILURE(AcceptName());

  // Sun and gamma, by the keyboard: a set without a name is not kept, so that its button does
  // nothing but take the keyboard.
  ASSERT_TRUE(AwaitFinalPicture(finals));
  const Colour plain = Wall();
  finals = FinalPictures();
  ASSERT_NO_FATAL_FAILURE(ClickTool("PointLight"));
  auto lights = Panel("Lighting/Image settings");
  ASSERT_TRUE(lights);
  ASSERT_NO_FATAL_FAILURE(ClickPicture(*lights, "SaveSmall", 60, lights->Place().width));
  Press(Key::kTab, 3);
  ReplaceText("2.5");
  Press(Key::kTab, 13);
  ReplaceText("1.8");
  // IEEE 754: 2.5 is 40200000, 1.8 is 3fe66666.
  EXPECT_TRUE(Eventually(
      [this] {
        const std::string stored = StoredText();
        return stored.find(R"("gamma": "6666e63f")") != std::string::npos &&
               stored.find(R"("light_factors": "00002040)") != std::string::npos;
      },
      kSoon))
      << StoredText();
  ASSERT_TRUE(AwaitFinalPicture(finals));
  Colour lit = Wall();
  EXPECT_TRUE(Eventually([&] {
    lit = Wall();
    // Light and gamma come one after the other.
    std::this_thread::sleep_for(std::chrono::seconds(3));
    return Distance(lit, plain) > 30 && Distance(lit, Wall()) == 0;
  }));

  window_->Close();
  ASSERT_EQ(program_.Wait(kSoon), 0);
  ASSERT_NO_FATAL_FAILURE(Start());
  panel = Panel("Presets");
  ASSERT_TRUE(panel) << "it was shown when the viewer was closed";
  ASSERT_TRUE(ViewerWindow::Exists("Lighting/Image settings"));
  ASSERT_NO_FATAL_FAILURE(ClickRow(*panel, "KeyFrameAnimationSmall"));

  // Dwells of 1, 2 and 1 seconds, two ways of 2 seconds between.
  constexpr double kSeconds = 8;
  const std::size_t shown = Log("preset shown");
  const std::size_t pictures = Log("picture shown");
  OpenLast();
  const auto start = Clock::now();
  std::vector<std::string> walls;
  while (Log("preset shown") == shown && Clock::now() - start < kPatience) {
    const std::string wall = NameOf(Wall());
    const bool known = wall == "red" || wall == "green" || wall == "blue";
    if (known && (walls.empty() || walls.back() != wall)) walls.push_back(wall);
    std::this_thread::sleep_for(milliseconds(10));
  }
  const double took = std::chrono::duration<double>(Clock::now() - start).count();
  EXPECT_NEAR(took, kSeconds, 0.05 * kSeconds);
  const auto frames = static_cast<double>(Log("picture shown") - pictures);
  EXPECT_GT(kSeconds / frames, 0.04) << "frames were not slow";
  EXPECT_GE(frames, 2);
  EXPECT_TRUE(Eventually([this] { return NameOf(Wall()) == "blue"; }));
  if (walls.empty() || walls.back() != "blue") walls.push_back("blue");
  ASSERT_GE(walls.size(), 3u);
  EXPECT_EQ(std::vector(walls.end() - 3, walls.end()),
            (std::vector<std::string>{"red", "green", "blue"}));
  EXPECT_TRUE(Eventually([&] { return Distance(Wall(), lit) < 6; })) << "the same light as before";

  // Escape ends a tour, and so does the end of the viewer.
  OpenLast();
  std::this_thread::sleep_for(milliseconds(1000));
  PressKey(Key::kEscape);
  const auto escaped = Clock::now();
  ASSERT_TRUE(log_.WaitFor("preset shown", shown + 1));
  EXPECT_LT(Clock::now() - escaped, std::chrono::seconds(2));
  OpenLast();
  std::this_thread::sleep_for(milliseconds(1000));
  window_->Close();
  EXPECT_EQ(program_.Wait(kSoon), 0);
  EXPECT_EQ(Log("preset shown"), shown + 3);
}

}  // namespace
}  // namespace qv::e2e
