#include <gtest/gtest.h>
#include <wx/fileconf.h>
#include <wx/sstream.h>

#include "app/WindowLayout.h"

namespace qv {
namespace {

const LayoutDefaults kDefaults{{500, 100, 308, 289}, {240, 180}, true};
constexpr char kPrefix[] = "/Layouts/Some/";

bool OnOneDisplay(const wxPoint& position) {
  return wxRect(0, 0, 1920, 1080).Contains(position);
}

class WindowLayoutTest : public ::testing::Test {
 protected:
  LayoutPlan Plan() { return PlanLayout(settings_, kPrefix, kDefaults, OnOneDisplay); }

  wxStringInputStream nothing_{""};
  wxFileConfig settings_{nothing_};
};

TEST_F(WindowLayoutTest, ComesBackAsItWasStored) {
  StoreLayout(settings_, kPrefix, {12, 34, 560, 780}, false, true);
  // What others write and read, too.
  EXPECT_EQ(settings_.ReadLong("/Layouts/Some/PosX", -1), 12);
  EXPECT_EQ(settings_.ReadLong("/Layouts/Some/Posy", -1), 34);
  EXPECT_EQ(settings_.ReadLong("/Layouts/Some/Width", -1), 560);
  EXPECT_EQ(settings_.ReadLong("/Layouts/Some/Height", -1), 780);
  EXPECT_EQ(settings_.ReadLong("/Layouts/Some/Visible", -1), 0);
  EXPECT_EQ(settings_.ReadLong("/Layouts/Some/Maximized", -1), 1);
  const LayoutPlan plan = Plan();
  EXPECT_EQ(plan.rect, wxRect(12, 34, 560, 780));
  EXPECT_EQ(plan.visible, false);
  EXPECT_TRUE(plan.maximized);
}

TEST_F(WindowLayoutTest, FallsBackWhereTheStoreCannotBeUsed) {
  LayoutPlan plan = Plan();
  EXPECT_EQ(plan.rect, kDefaults.rect);
  EXPECT_EQ(plan.visible, true);
  EXPECT_FALSE(plan.maximized);

  // On a display that is gone: not even the visibility.
  StoreLayout(settings_, kPrefix, {2500, 34, 560, 780}, false, false);
  plan = Plan();
  EXPECT_EQ(plan.rect, kDefaults.rect);
  EXPECT_EQ(plan.visible, std::nullopt);

  // One side too small gives the smallest window.
  StoreLayout(settings_, kPrefix, {12, 34, 239, 780}, false, false);
  plan = Plan();
  EXPECT_EQ(plan.rect, wxRect(12, 34, 240, 180));
  EXPECT_EQ(plan.visible, false);
}

}  // namespace
}  // namespace qv
