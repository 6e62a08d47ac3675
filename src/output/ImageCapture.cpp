#include "output/ImageCapture.h"

#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "core/Log.h"
#include "platform/Clock.h"

namespace qv {
namespace {

constexpr unsigned kPumpMilliseconds = 10;

}  // namespace

ImageCapture::ImageCapture(RaytraceImpl& renderer, Job job, std::function<void()> done)
    : renderer_(renderer), job_(std::move(job)), done_(std::move(done)) {}

ImageCapture::~ImageCapture() {
  Cancel();
  Finish([] {});
}

bool ImageCapture::Start() {
  renderer_.ReadScreen([this](const ScreenView& screen) {
    formerWidth_ = screen.width;
    formerHeight_ = screen.height;
  });
  renderer_.SetOffline(true);
  if (!renderer_.ResizeTargets(job_.width, job_.height, RaytraceImpl::kKeepAntialias)) {
    GiveBack();
    return false;
  }
  const RenderCamera& camera = job_.camera;
  renderer_.StartRender(camera.position, camera.forward, camera.up, camera.fieldOfView,
                        camera.target, ModeFinal, true);
  try {
    thread_ = std::thread([this] { Run(); });
  } catch (const std::system_error& error) {
    Log(LogLevel::kError, std::string("no thread to capture with: ") + error.what());
    renderer_.AbandonRender();
    GiveBack();
    return false;
  }
  return true;
}

void ImageCapture::Cancel() {
  if (cancelled_.exchange(true) || stage_ != Stage::kRendering) return;
  renderer_.AbandonRender();
}

float ImageCapture::Progress() const {
  return stage_ == Stage::kRendering ? renderer_.JobProgress() : 1.0f;
}

void ImageCapture::Run() {
  outcome_ = RenderAndWrite();
  stage_ = Stage::kDone;
  if (done_) done_();
}

ImageCapture::Outcome ImageCapture::RenderAndWrite() {
  renderer_.WaitUntilDone(std::nullopt);
  if (cancelled_) return Outcome::kCancelled;
  stage_ = Stage::kWriting;
  // Without its last pass the job has not come to its end: there was no thread for it.
  if (renderer_.Statistics().antialiasPassSeconds <= 0) return Outcome::kNotWritten;
  std::optional<PictureCopy> picture;
  renderer_.ReadScreen([&picture](const ScreenView& screen) { picture.emplace(screen); });
  switch (picture->Save(job_.file)) {
    case SaveResult::kSaved:
      return Outcome::kSaved;
    case SaveResult::kUnknownFormat:
      return Outcome::kUnknownFormat;
    case SaveResult::kFailed:
      break;
  }
  return Outcome::kNotWritten;
}

ImageCapture::Outcome ImageCapture::Finish(const std::function<void()>& pump) {
  if (!thread_.joinable()) return outcome_;
  while (stage_ != Stage::kDone) {
    pump();
    platform::SleepMilliseconds(kPumpMilliseconds);
  }
  thread_.join();
  GiveBack();
  return outcome_;
}

void ImageCapture::GiveBack() {
  renderer_.StopRender();
  renderer_.ResizeTargets(formerWidth_, formerHeight_, RaytraceImpl::kKeepAntialias);
  renderer_.SetOffline(false);
}

}  // namespace qv
