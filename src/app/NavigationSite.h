#pragma once

#include <wx/gdicmn.h>

#include "link/IpcInterfaceApp.h"
#include "render/RaytraceImpl.h"

namespace qv {

// What navigation needs of the frame. GUI thread only.
class NavigationSite {
 public:
  virtual ~NavigationSite() = default;

  // Null while the camera must not be moved: no scene stands, or another wait is under way.
  virtual RaytraceImpl* NavigableRenderer() const = 0;
  virtual IpcInterfaceApp* Link() const = 0;
  virtual wxSize PictureSize() const = 0;  // of the renderer's pictures
  virtual bool FollowsCamera() const = 0;  // the host wants to know the camera
  virtual float EyeHeight() const = 0;
  virtual void RefreshStatusBar() = 0;
  // Navigation has done a step, whether or not it moved anything.
  virtual void CameraStepped() = 0;
};

}  // namespace qv
