#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <fstream>

#include "core/Calendar.h"
#include "presets/FakeStage.h"
#include "presets/MemorySettings.h"
#include "presets/PresetDialogRules.h"
#include "presets/PresetsEditor.h"
#include "presets/TestFile.h"

namespace qv {
namespace {

class FakeFrame : public PresetsFrame {
 public:
  CameraStage& Stage() override { return stage; }
  void Play(const std::function<void()>& moves) override { moves(); }
  SunSite Sun() override { return sun; }
  float EyeHeight() override { return 66; }
  bool IsCameraLinked() override { return linked; }
  void SendDateTime(int year, int month, int day, int hour, int minute, int second) override {
    sentDates.push_back({year, month, day, hour, minute, second});
  }
  std::vector<HostPage> GetPages() override { return pages; }
  void SetProperty(const std::string& name, std::span<const std::byte> value) override {
    EXPECT_EQ(name, "presets");
    stored.emplace(value.begin(), value.end());
    ++saves;
  }

  FakeStage stage;
  SunSite sun;
  bool linked = false;
  std::vector<HostPage> pages;
  std::optional<std::vector<std::byte>> stored;
  int saves = 0;
  std::vector<std::vector<int>> sentDates;
};

// Keeps the rows as a list control does, selection included.
class FakeRows : public PresetRows {
 public:
  struct Row {
    wxString name;
    PresetIcon icon;
    bool selected = false;
  };

  void Clear() override { rows.clear(); }
  void InsertRow(int row, const wxString& name, PresetIcon icon) override {
    rows.insert(rows.begin() + row, {name, icon});
  }
  void RemoveRow(int row) override { rows.erase(rows.begin() + row); }
  void SetRowText(int row, const wxString& name) override {
    rows[static_cast<std::size_t>(row)].name = name;
  }
  void SelectRow(int row) override { rows[static_cast<std::size_t>(row)].selected = true; }
  void FitColumn() override {}
  void ShowRecording(bool on) override { recording = on; }

  std::vector<int> Selected() const {
    std::vector<int> selected;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].selected) selected.push_back(static_cast<int>(i));
    }
    return selected;
  }

  std::vector<Row> rows;
  bool recording = false;
};

// Answers with what was laid ready, and otherwise takes the proposal.
class FakePrompts : public PresetsPrompts {
 public:
  std::optional<Name> AskName(const wxString& proposal, std::optional<bool> recordSun) override {
    proposals.push_back(proposal);
    offeredSun = recordSun;
    if (cancel) return std::nullopt;
    return Name{TakeName(proposal), tick.value_or(recordSun.value_or(false))};
  }
  std::optional<Path> AskPath(const wxString& proposal) override {
    proposals.push_back(proposal);
    if (cancel) return std::nullopt;
    return Path{TakeName(proposal), 25};
  }
  std::optional<wxString> ChoosePathFile(const wxString& folder) override {
    chosenIn = folder;
    return file;
  }
  void ShowMessage(const wxString& text) override { messages.push_back(text); }

  wxString TakeName(const wxString& proposal) {
    if (names.empty()) return proposal;
    const wxString name = names.front();
    names.pop_front();
    return name;
  }

  bool cancel = false;
  std::deque<wxString> names;
  std::vector<wxString> proposals, messages;
  std::optional<bool> offeredSun, tick;
  std::optional<wxString> file;
  wxString chosenIn;
};

class PresetsEditorTest : public testing::Test {
 protected:
  using Rows = std::vector<int>;

  // Every test ends with rows that mirror the presets.
  void TearDown() override {
    ASSERT_EQ(rows_.rows.size(), editor_.presets().size());
    for (std::size_t i = 0; i < rows_.rows.size(); ++i) {
      EXPECT_EQ(rows_.rows[i].name, editor_.presets()[i]->name);
    }
  }

  void LoadViews(std::initializer_list<const char*> names, bool own = true) {
    std::vector<PresetPointer> presets;
    for (const char* name : names) {
      auto view = std::make_shared<ViewPreset>();
      view->name = name;
      view->isOwn = own;
      view->pose.position.x() = static_cast<float>(presets.size());
      presets.push_back(view);
    }
    Load(presets);
  }

  void Load(const std::vector<PresetPointer>& presets) {
    editor_.LoadPresets(WritePresetBlock(presets));
  }

  std::string Names() const {
    std::string names;
    for (const PresetPointer& preset : editor_.presets()) {
      names += (names.empty() ? "" : " ") + preset->name.ToStdString();
    }
    return names;
  }

  // What the host was given last.
  std::string StoredNames() const {
    std::string names;
    for (const PresetPointer& preset : ReadPresetBlock(*frame_.stored)) {
      names += (names.empty() ? "" : " ") + preset->name.ToStdString();
    }
    return names;
  }

  MemorySettings settings_;
  FakeFrame frame_;
  FakeRows rows_;
  FakePrompts prompts_;
  PresetsEditor editor_{frame_, rows_, prompts_, settings_};
};

TEST_F(PresetsEditorTest, AddsTheViewOfTheCamera) {
  frame_.stage.camera.position = {1, 2, 3};
  frame_.stage.camera.forward = {0, 1, 0};
  frame_.stage.camera.fieldOfView = 0.7f;
  editor_.AddView();
  editor_.AddView();
  EXPECT_EQ(StoredNames(), "View1 View2");
  EXPECT_EQ(frame_.saves, 2);
  const auto& view = dynamic_cast<const ViewPreset&>(*editor_.presets()[0]);
  EXPECT_EQ(view.pose.position, Vec3(1, 2, 3));
  EXPECT_LT((DirectionFromQuaternion(view.pose.orientation) - Vec3(0, 1, 0)).norm(), 1e-6f);
  EXPECT_EQ(view.pose.fieldOfView, 0.7f);
  EXPECT_EQ(view.eyeHeight, 66);
  EXPECT_FALSE(view.hasSunTime);
  EXPECT_EQ(rows_.rows[0].icon, PresetIcon::kView);
  EXPECT_FALSE(prompts_.offeredSun);

  prompts_.cancel = true;
  editor_.AddView();
  EXPECT_EQ(frame_.saves, 2);
}

TEST_F(PresetsEditorTest, AsksAgainForANameThatIsTaken) {
  LoadViews({"Hall", "View1"});
  prompts_.names = {"hall", "HALL", "Attic"};  // rows are found whatever their case
  editor_.AddView();
  EXPECT_EQ(Names(), "Hall View1 Attic");
  EXPECT_EQ(prompts_.messages, std::vector<wxString>(2, "Specified name already exists."));
  EXPECT_EQ(prompts_.proposals, (std::vector<wxString>{"View2", "hall", "HALL"}));
}

TEST_F(PresetsEditorTest, GivesUpWhereAllNumbersAreTaken) {
  std::vector<PresetPointer> views;
  for (int n = 1; n <= 9999; ++n) {
    views.push_back(std::make_shared<ViewPreset>());
    views.back()->name = "View" + std::to_string(n);
  }
  Load(views);
  EXPECT_EQ(editor_.ProposeName("View", true), wxString("View (1)"));
  editor_.AddView();
  EXPECT_TRUE(prompts_.proposals.empty());
  EXPECT_EQ(editor_.presets().size(), 9999u);
}

TEST_F(PresetsEditorTest, InsertsBehindTheSelectionAndUpdatesWhatIsOwn) {
  LoadViews({"a", "b"});
  editor_.InsertView(Rows{0});
  editor_.InsertView(Rows{2});
  EXPECT_EQ(StoredNames(), "a View1 b View2");
  editor_.InsertView(Rows{});
  EXPECT_EQ(Names(), "a View1 b View2");

  const wxString id = editor_.presets()[2]->id;
  frame_.stage.camera.position = {7, 8, 9};
  editor_.UpdateView(Rows{2});
  const auto& view = dynamic_cast<const ViewPreset&>(*editor_.presets()[2]);
  EXPECT_EQ(view.name, "b");
  EXPECT_EQ(view.pose.position, Vec3(7, 8, 9));
  EXPECT_NE(view.id, id);
  EXPECT_EQ(frame_.saves, 3);
}

TEST_F(PresetsEditorTest, BuildsAnimationsFromTheUsableViews) {
  LoadViews({"a", "b", "c"});
  auto blind = std::make_shared<ViewPreset>();
  blind->name = "blind";
  blind->noCamera = true;
  auto presets = editor_.presets();
  presets.insert(presets.begin() + 1, blind);
  Load(presets);

  editor_.AddKeyframeAnimation(Rows{0, 1, 3});
  const auto& flight = dynamic_cast<const CameraKeyAnimationPreset&>(*editor_.presets()[4]);
  ASSERT_EQ(flight.views.size(), 2u);
  EXPECT_EQ(flight.views[1].name, "c");
  EXPECT_NEAR(flight.keys[2].time, 1 + 2 / 25.0, 1e-6);
  editor_.AddTour(Rows{0, 2, 3});
  EXPECT_EQ(editor_.presets()[5]->type, PresetType::kTour);
  const auto& tour = dynamic_cast<const TourAnimationPreset&>(*editor_.presets()[5]);
  EXPECT_EQ(tour.keys.back().time, 1 + 2 + 2 + 2 + 1);
  EXPECT_EQ(StoredNames(), "a blind b c Path1 Path2");
  EXPECT_EQ(rows_.rows[5].icon, PresetIcon::kAnimation);
  EXPECT_TRUE(prompts_.messages.empty());

  editor_.AddKeyframeAnimation(Rows{0, 4});
  editor_.AddKeyframeAnimation(Rows{0, 1});
  editor_.AddTour(Rows{1, 3});
  EXPECT_EQ(prompts_.messages,
            (std::vector<wxString>{
                "Please select multiple View Presets.",
                "Please select multiple View Presets.\nSome View Presets might not have camera "
                "settings.\n  ->blind",
                "Please select multiple View Presets.\nSome View Presets have no camera "
                "settings.\n  ->blind"}));
  EXPECT_EQ(frame_.saves, 2);
}

TEST_F(PresetsEditorTest, ExplodesAnAnimationIntoItsViews) {
  LoadViews({"a", "b"}, false);
  editor_.AddTour(Rows{0, 1});
  editor_.Explode(Rows{0});  // a view cannot be
  editor_.MoveUp(Rows{2});
  EXPECT_EQ(Names(), "a Path1 b");
  editor_.Explode(Rows{1});
  EXPECT_EQ(StoredNames(), "a a b b");
  EXPECT_TRUE(editor_.presets()[1]->isOwn);
  EXPECT_FALSE(editor_.presets()[0]->isOwn);
  EXPECT_EQ(rows_.rows[2].icon, PresetIcon::kView);
  EXPECT_EQ(rows_.rows[3].icon, PresetIcon::kImportedView);
  EXPECT_EQ(rows_.Selected(), Rows{1});
}

TEST_F(PresetsEditorTest, MovesABlockOverItsNeighbour) {
  LoadViews({"a", "b", "c", "d", "e"});
  rows_.rows[2].selected = rows_.rows[3].selected = true;
  editor_.MoveUp(rows_.Selected());
  EXPECT_EQ(StoredNames(), "a c d b e");
  EXPECT_EQ(rows_.Selected(), (Rows{1, 2}));
  editor_.MoveUp(rows_.Selected());
  EXPECT_FALSE(editor_.EnabledFor(rows_.Selected()).moveUp);
  editor_.MoveUp(rows_.Selected());
  EXPECT_EQ(StoredNames(), "c d a b e");
  for (int i = 0; i < 5; ++i) editor_.MoveDown(rows_.Selected());
  EXPECT_EQ(StoredNames(), "a b e c d");
  EXPECT_EQ(rows_.Selected(), (Rows{3, 4}));
  EXPECT_FALSE(editor_.EnabledFor(rows_.Selected()).moveDown);
  EXPECT_FALSE(editor_.EnabledFor(Rows{1, 3}).moveUp);
  EXPECT_FALSE(editor_.EnabledFor(Rows{1, 3}).moveDown);
}

TEST_F(PresetsEditorTest, EnablesWhatTheSelectionAllows) {
  LoadViews({"a", "b"});
  editor_.AddTour(Rows{0, 1});
  auto presets = editor_.presets();
  presets[1]->isOwn = false;
  Load(presets);

  const auto none = editor_.EnabledFor(Rows{});
  EXPECT_TRUE(none.addView && none.importPages);
  EXPECT_FALSE(none.insertView || none.updateView || none.addAnimation || none.movie ||
               none.explode || none.remove || none.moveUp || none.moveDown);
  const auto own = editor_.EnabledFor(Rows{0});
  EXPECT_TRUE(own.insertView && own.updateView && own.remove && own.moveDown);
  EXPECT_FALSE(own.movie || own.explode || own.addAnimation || own.moveUp);
  const auto imported = editor_.EnabledFor(Rows{1});
  EXPECT_FALSE(imported.updateView || imported.remove);
  const auto tour = editor_.EnabledFor(Rows{2});
  EXPECT_TRUE(tour.movie && tour.explode && tour.remove && tour.moveUp);
  EXPECT_FALSE(tour.updateView || tour.moveDown);
  const auto several = editor_.EnabledFor(Rows{0, 1});
  EXPECT_TRUE(several.addAnimation);
  EXPECT_FALSE(several.remove || several.insertView || several.movie);

  editor_.ToggleRecording();
  EXPECT_FALSE(editor_.EnabledFor(Rows{0}).addView);
  EXPECT_FALSE(editor_.EnabledFor(Rows{0}).insertView);
  EXPECT_FALSE(editor_.EnabledFor(Rows{0}).importPages);
  EXPECT_TRUE(editor_.EnabledFor(Rows{0}).updateView);
}

TEST_F(PresetsEditorTest, DeletesImportedViewsToo) {
  LoadViews({"a", "b", "c", "d"}, false);
  editor_.Delete(Rows{0, 2, 3, 9});
  EXPECT_EQ(StoredNames(), "b");
  editor_.Delete(Rows{});
  EXPECT_EQ(frame_.saves, 1);
}

TEST_F(PresetsEditorTest, RenamesWithoutSaving) {
  LoadViews({"a", "b"});
  editor_.Rename(0, "b");
  editor_.Rename(1, "");
  editor_.Rename(2, "c");
  EXPECT_EQ(Names(), "b b");
  EXPECT_EQ(frame_.saves, 0);
}

TEST_F(PresetsEditorTest, OpensTheFirstSelectedAndTellsALinkedHostTheDate) {
  LoadViews({"a", "b"});
  // 12:34:56 and a bit of 2012-11-20, in the zone of 139 degrees east.
  frame_.sun = {JulianDateFromCalendar(2012, 11, 20, 12 + 34 / 60.0 + 56.4 / 3600, 139), 35, 139};
  editor_.Open(Rows{1});
  EXPECT_EQ(frame_.stage.camera.position.x(), 1);
  EXPECT_TRUE(frame_.sentDates.empty());
  frame_.linked = true;
  editor_.presets()[0]->jumpDirectly = true;  // is cleared
  editor_.Open(Rows{0, 1});
  EXPECT_GT(frame_.stage.shown.size(), 40u);
  EXPECT_EQ(frame_.stage.camera.position.x(), 0);
  EXPECT_EQ(frame_.sentDates, (std::vector<std::vector<int>>{{2012, 11, 20, 12, 34, 56}}));
  editor_.Open(Rows{});
}

TEST_F(PresetsEditorTest, LeavesTheCameraToThePresetThatWasOpenedLast) {
  LoadViews({"a", "b"});
  frame_.linked = true;
  frame_.stage.onYield = [this] {
    frame_.stage.onYield = [this] { LoadViews({"c"}); };  // and the list is loaded anew meanwhile
    editor_.Open(Rows{1});
  };
  editor_.Open(Rows{0});
  EXPECT_EQ(frame_.stage.camera.position.x(), 1);
  EXPECT_EQ(frame_.sentDates.size(), 1u);
}

TEST_F(PresetsEditorTest, ImportsTheHostsViewsUnderNewNames) {
  HostPage page;
  page.name = u"Hall";
  page.eye = {1, 2, 3};
  page.direction = {0, -2, 0};
  page.fieldOfView = 0.8f;
  page.hasSunTime = true;
  page.year = 2000, page.month = 1, page.day = 1, page.hour = 12;
  page.longitude = 0;
  page.latitude = 51.5f;
  HostPage second = page;
  second.name = u"Küche \xD83C\xDFE0 \xD83C";  // a pair, and half of one
  frame_.pages = {page, second};
  editor_.ImportPages();
  EXPECT_EQ(frame_.saves, 1);
  EXPECT_EQ(editor_.presets()[1]->name, wxString::FromUTF8("K\xC3\xBC"
                                                           "che \xF0\x9F\x8F\xA0 \xEF\xBF\xBD"));
  const auto& view = dynamic_cast<const ViewPreset&>(*editor_.presets()[0]);
  EXPECT_EQ(view.sun.julianDate, 2451545.0);  // the epoch J2000.0
  EXPECT_EQ(view.sun.latitude, 51.5);
  EXPECT_TRUE(view.hasSunTime && view.isOwn);
  EXPECT_LT((DirectionFromQuaternion(view.pose.orientation) - Vec3(0, -1, 0)).norm(), 1e-6f);

  frame_.pages = {page};
  editor_.ImportPages();
  editor_.ImportPages();
  EXPECT_EQ(editor_.presets()[2]->name, "Hall (1)");
  EXPECT_EQ(editor_.presets()[3]->name, "Hall (2)");
}

TEST_F(PresetsEditorTest, ImportsAPathFile) {
  const auto file = TestFile();
  const auto import = [&](const char* text) {
    std::ofstream(file) << text;
    prompts_.file = file.string();
    editor_.ImportAnimatePath();
    std::filesystem::remove(file);
  };
  import("1,2,3,4,5,6\n1,2,3,4,5,7\nbroken\n");  // two keys are enough
  EXPECT_EQ(StoredNames(), "Path1");
  EXPECT_EQ(editor_.presets()[0]->type, PresetType::kCameraAnimation);
  EXPECT_FALSE(editor_.presets()[0]->hasSunTime);
  EXPECT_EQ(prompts_.chosenIn, "");
  import("1,2,3,4,5,6\nbroken\n");
  import("# nothing\n");
  EXPECT_EQ(prompts_.chosenIn, wxString(file.parent_path().string()));
  EXPECT_EQ(prompts_.messages,
            (std::vector<wxString>{"Invalid format at line 3.", "Invalid format at line 2.",
                                   "Keyframe count must be at least 2.",
                                   "Keyframe count must be at least 2."}));
  prompts_.file.reset();
  editor_.ImportAnimatePath();
  EXPECT_EQ(frame_.saves, 1);
}

TEST_F(PresetsEditorTest, RecordsTheCamera) {
  frame_.sun = {2456000.5, 35, 139};
  editor_.RecordSample();  // not yet
  editor_.ToggleRecording();
  EXPECT_TRUE(rows_.recording);
  for (int i = 0; i < 3; ++i) {
    frame_.stage.time += 1;
    frame_.stage.camera.position.x() += 5;
    editor_.RecordSample();
    editor_.RecordSample();  // the camera stands still
  }
  editor_.ToggleRecording();
  EXPECT_FALSE(rows_.recording);
  EXPECT_EQ(prompts_.offeredSun, true);
  ASSERT_EQ(editor_.presets().size(), 1u);
  const auto& path = dynamic_cast<const CameraAnimationPreset&>(*editor_.presets()[0]);
  EXPECT_EQ(path.name, "Path1");
  EXPECT_TRUE(path.hasSunTime);
  EXPECT_EQ(path.sun.latitude, 35);
  ASSERT_EQ(path.keys.size(), 4u);
  EXPECT_EQ(path.keys[3].time, 3);

  // A tick that is taken away stays away while another name is asked for, and the next time.
  prompts_.tick = false;
  prompts_.names = {"Path1", "Way"};
  editor_.ToggleRecording();
  editor_.ToggleRecording();
  EXPECT_EQ(prompts_.offeredSun, false);
  EXPECT_FALSE(editor_.presets().back()->hasSunTime);
  editor_.ToggleRecording();
  prompts_.cancel = true;
  editor_.ToggleRecording();
  EXPECT_EQ(prompts_.offeredSun, false);
  EXPECT_EQ(frame_.saves, 2);
}

TEST(PresetDialogRules, TakeASpeedAboveZeroAndAName) {
  MemorySettings settings;
  EXPECT_EQ(ProposedCameraSpeed(settings), "50.0");
  EntryFault fault;
  const auto messageFor = [&](const char* name, const char* speed) {
    EXPECT_FALSE(CheckPathEntry(settings, name, speed, fault));
    return fault.message;
  };
  EXPECT_EQ(messageFor("", "fast"), "Invalid camera speed.");
  EXPECT_EQ(messageFor("", "nan"), "Invalid camera speed.");
  EXPECT_EQ(messageFor("", "1e300"), "Invalid camera speed.");
  EXPECT_EQ(messageFor("", "0"), "Camera Speed must be larger than 0.");
  EXPECT_EQ(messageFor("", "1e-60"), "Camera Speed must be larger than 0.");
  EXPECT_FALSE(fault.inName);
  EXPECT_EQ(messageFor("", "12.5"), "Invalid preset name.");
  EXPECT_TRUE(fault.inName);
  EXPECT_EQ(ProposedCameraSpeed(settings), "50.0");
  const auto entry = CheckPathEntry(settings, "Path1", "12.5", fault);
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->speed, 12.5f);
  EXPECT_EQ(ProposedCameraSpeed(settings), "12.5");
}

}  // namespace
}  // namespace qv
