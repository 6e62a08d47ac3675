#pragma once

// What the files of the main frame share and nobody else needs.

#include <wx/timer.h>

#include <functional>
#include <utility>

#include "app/MainFrame.h"
#include "output/ImageCapture.h"

namespace qv {

class MainFrame::WaitScope {
 public:
  explicit WaitScope(MainFrame& frame) : frame_(frame) { frame_.waiting_ = true; }
  ~WaitScope() {
    frame_.waiting_ = false;
    frame_.CatchUpWithClose();
  }
  WaitScope(const WaitScope&) = delete;
  WaitScope& operator=(const WaitScope&) = delete;

 private:
  MainFrame& frame_;
};

// A capture that is under way, and what the frame gets back after it.
struct MainFrame::CaptureInHand {
  CaptureInHand(RaytraceImpl& renderer, ImageCapture::Job job, std::function<void()> done)
      : capture(renderer, std::move(job), std::move(done)) {}

  ImageCapture capture;
  wxString file;
  bool cameraLink = false;
  wxTimer timer;  // looks at the progress
};

}  // namespace qv
