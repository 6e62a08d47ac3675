#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/evtloop.h>
#include <wx/frame.h>
#include <wx/init.h>

#include "FrameWindow.h"

namespace qv {
namespace {

class Waiter : public FrameWindow {
 public:
  using FrameWindow::YieldToWindows;
};

class YieldToWindows : public ::testing::Test {
 protected:
  YieldToWindows() {
    wxApp::SetInstance(new wxApp);
    int count = 0;
    started_ = wxEntryStart(count, static_cast<wxChar**>(nullptr));
  }
  ~YieldToWindows() override {
    if (started_) wxEntryCleanup();
  }

  bool started_ = false;
};

TEST_F(YieldToWindows, PaintsAndLeavesQueuedWork) {
  ASSERT_TRUE(started_);
  wxEventLoop loop;
  const wxEventLoopActivator active(&loop);
  wxFrame frame(nullptr, wxID_ANY, "painted");
  int painted = 0, worked = 0;
  frame.Bind(wxEVT_PAINT, [&](wxPaintEvent&) {
    const wxPaintDC dc(&frame);
    ++painted;
  });
  frame.Show();
  frame.Update();
  painted = 0;
  frame.CallAfter([&] { ++worked; });
  frame.Refresh();
  Waiter::YieldToWindows();
  EXPECT_GT(painted, 0);
  EXPECT_EQ(worked, 0);
  wxTheApp->ProcessPendingEvents();
  EXPECT_EQ(worked, 1);
}

}  // namespace
}  // namespace qv
