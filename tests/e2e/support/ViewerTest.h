#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "e2e/support/Display.h"
#include "e2e/support/Looks.h"
#include "e2e/support/Programs.h"
#include "e2e/support/Scenes.h"
#include "e2e/support/TestHost.h"
#include "e2e/support/ViewerLog.h"
#include "e2e/support/ViewerWindow.h"

namespace qv::e2e {

// How long things may take that are only waited for; and an end that has to come soon, with room
// for a sanitizer.
constexpr std::chrono::seconds kPatience{120};
constexpr std::chrono::seconds kSoon{20};

// A test with a display of its own.
class ViewerTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(display_.failure(), ""); }

  void TearDown() override {
    host_.reset();
    if (HasFailure()) std::cerr << "--- the viewer's log:\n" << log_.Text();
  }

  // Starts the viewer with a host, and finds its window.
  void StartViewer() {
    host_ = TestHost::Start(ViewerProgram(), log_);
    ASSERT_TRUE(host_);
    window_ = ViewerWindow::Find(kPatience);
    ASSERT_TRUE(window_);
  }

  // Waits for the antialiased picture of a job that begins when `known` such pictures have been
  // shown.
  bool AwaitFinalPicture(std::size_t known = 0) {
    return log_.WaitFor("picture shown: antialiased", known, kPatience);
  }
  std::size_t FinalPictures() const { return log_.Lines("picture shown: antialiased").size(); }

  // Clicks the tool with that picture, while the view's picture is of strong colours all over.
  void ClickTool(const std::string& name) {
    // Away from the tools, which look different under the pointer.
    Screenshot shot = window_->Shoot();
    window_->MovePointer(shot.width / 2, shot.height / 2);
    std::optional<Point> tool;
    ASSERT_TRUE(Eventually([&] {
      shot = window_->Shoot();
      tool = FindTool(shot, FindPicture(shot).top, name);
      return tool.has_value();
    })) << name;
    window_->Click(tool->x, tool->y);
  }

  // Waits for a dialog that keys go to.
  std::unique_ptr<ViewerWindow> AwaitDialog(const std::string& title) {
    auto dialog = ViewerWindow::Find(kPatience, title);
    if (!dialog || !Eventually([&] { return dialog->IsActive(); }, kSoon)) return nullptr;
    // Until what is in it stands where it stays.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    return dialog;
  }
  bool Leaves(const std::string& title) {
    return Eventually([&] { return !ViewerWindow::Exists(title); }, kSoon);
  }

  template <class Condition>
  static bool Eventually(Condition&& holds, std::chrono::milliseconds timeout = kPatience) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (!holds()) {
      if (std::chrono::steady_clock::now() >= end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
  }

  Display display_;
  ViewerLog log_{display_.folder() / "viewer.log"};
  std::unique_ptr<TestHost> host_;
  std::unique_ptr<ViewerWindow> window_;
};

}  // namespace qv::e2e
