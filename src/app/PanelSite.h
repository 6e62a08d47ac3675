#pragma once

#include "app/NavigationSite.h"

namespace qv {

// What the panels of presets and lights need of the frame, beyond what navigation needs. GUI thread
// only.
class PanelSite : public NavigationSite {
 public:
  // Null only while there is none at all.
  virtual RaytraceImpl* Renderer() const = 0;
  // The same while the camera may be moved and pictures may be asked for: null until a scene
  // stands, and while something else has the renderer.
  virtual RaytraceImpl* SceneRenderer() const = 0;
  // The renderer's picture has been written anew without a job.
  virtual void ShowAdjustedPicture() = 0;

  // The frame was asked to close: what plays has to end.
  virtual bool CloseAsked() const = 0;
  // Nothing plays any more.
  virtual void PlayingEnded() = 0;
};

}  // namespace qv
