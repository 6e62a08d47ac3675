#pragma once

#include <optional>

#include "app/EscapeWatch.h"
#include "app/PanelSite.h"
#include "presets/PresetsFrame.h"

namespace qv {

// Brings what the presets want to the renderer, the host and the event loop. GUI thread only.
class PresetsSite : public PresetsFrame, private CameraStage {
 public:
  // `site` outlives it.
  explicit PresetsSite(PanelSite& site) : site_(site) {}

  // Whether a preset moves the camera just now, further up the stack.
  bool IsPlaying() const { return playing_ > 0; }

 private:
  CameraStage& Stage() override { return *this; }
  void Play(const std::function<void()>& moves) override;
  SunSite Sun() override;
  float EyeHeight() override { return site_.EyeHeight(); }
  bool IsCameraLinked() override { return site_.FollowsCamera(); }
  void SendDateTime(int year, int month, int day, int hour, int minute, int second) override;
  std::vector<HostPage> GetPages() override;
  void SetProperty(const std::string& name, std::span<const std::byte> value) override;

  double Now() override;
  RenderCamera Camera() override;
  void SetSunDate(double julianDate) override;
  void Show(const RenderCamera& camera, StageFrame frame) override;
  bool FrameDone() override;
  void Yield() override;
  void Wait() override;
  bool StopAsked() override;

  // What was given up in mid-air stays there, but not in the quality of a moving picture.
  void FinishPicture();

  PanelSite& site_;
  std::optional<EscapeWatch> escape_;  // of the preset that was opened last
  int playing_ = 0;      // presets of which each was opened while the one before played
  bool moving_ = false;  // the picture that was asked for last is one of many
};

}  // namespace qv
