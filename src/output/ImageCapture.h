#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <thread>

#include "output/PictureFile.h"
#include "render/RaytraceImpl.h"

namespace qv {

// Renders one picture of any size at full quality into a file, beside the thread that asked for it.
//
// From Start to Finish the renderer belongs to the capture: it is offline and has pictures of the
// capture's size, and nobody may start or stop a job. All calls belong to the thread that owns the
// renderer, unless they say otherwise.
class ImageCapture {
 public:
  struct Job {
    RenderCamera camera;
    int width = 0;  // pixels
    int height = 0;
    std::filesystem::path file;
  };
  enum class Stage { kRendering, kWriting, kDone };
  enum class Outcome { kSaved, kCancelled, kUnknownFormat, kNotWritten };

  // `done` is called on the capture's own thread when Finish need not wait any more.
  ImageCapture(RaytraceImpl& renderer, Job job, std::function<void()> done);
  ~ImageCapture();  // cancels, and finishes
  ImageCapture(const ImageCapture&) = delete;
  ImageCapture& operator=(const ImageCapture&) = delete;

  // Begins; the renderer must be idle. False, with the renderer as it was, if there is no memory
  // for a picture of that size.
  bool Start();
  // Leaves the rendering at once; a file that is being written is written to its end. Any thread.
  void Cancel();
  Stage CurrentStage() const { return stage_; }  // any thread
  // Of the rendering, 0 to 1. Any thread.
  float Progress() const;
  // Waits for the end, with `pump` called again and again meanwhile, and gives the renderer back,
  // idle and with pictures of its former size, which are empty.
  Outcome Finish(const std::function<void()>& pump);

  const Job& job() const { return job_; }

 private:
  void Run();
  Outcome RenderAndWrite();
  void GiveBack();

  RaytraceImpl& renderer_;
  const Job job_;
  const std::function<void()> done_;
  int formerWidth_ = 0;
  int formerHeight_ = 0;
  std::atomic<bool> cancelled_{false};
  std::atomic<Stage> stage_{Stage::kRendering};
  std::atomic<Outcome> outcome_{Outcome::kCancelled};
  std::thread thread_;
};

}  // namespace qv
