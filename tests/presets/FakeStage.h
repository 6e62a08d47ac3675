#pragma once

#include <functional>
#include <vector>

#include "presets/CameraStage.h"

namespace qv {

// A stage with a clock of its own, on which every frame takes its time.
class FakeStage : public CameraStage {
 public:
  struct Shown {
    double time;
    RenderCamera camera;
    StageFrame frame;
  };

  double Now() override { return 1000 + time; }
  RenderCamera Camera() override { return camera; }
  void SetSunDate(double julianDate) override { dates.push_back(julianDate); }
  void Show(const RenderCamera& shownCamera, StageFrame frame) override {
    camera = shownCamera;
    shown.push_back({time, shownCamera, frame});
    busy = framesTake;
  }
  bool FrameDone() override { return busy <= 0; }
  void Yield() override {
    time += yieldTakes;
    if (onYield) onYield();
  }
  void Wait() override {
    time += 0.01;
    busy -= 0.01;
  }
  bool StopAsked() override { return time >= escapeAt; }

  double time = 0;
  double yieldTakes = 0.0625;
  double framesTake = 0;
  double busy = 0;
  double escapeAt = 1e9;
  std::function<void()> onYield;
  RenderCamera camera;
  std::vector<double> dates;
  std::vector<Shown> shown;
};

}  // namespace qv
