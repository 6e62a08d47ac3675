#pragma once

#include <wx/frame.h>

#include "app/NavigationSite.h"
#include "navigation/SceneProbe.h"

namespace qv {

// Answers navigation's questions from the renderer, for the picture as it lies in the view. Where
// the frame has no renderer to move in, there is nothing.
class ViewProbe : public SceneProbe {
 public:
  ViewProbe(const wxFrame& frame, const wxWindow& view, const NavigationSite& site)
      : frame_(frame), view_(view), site_(site) {}

  std::optional<float> DistanceAlong(const Vec3& from, const Vec3& direction) const override;
  PickedPoint Pick(int x, int y) const override;
  void PanVectors(float distance, Vec3& right, Vec3& up) const override;
  std::optional<SceneBox> Bounds() const override;
  ViewGeometry View() const override;

 private:
  const wxFrame& frame_;
  const wxWindow& view_;
  const NavigationSite& site_;
};

}  // namespace qv
