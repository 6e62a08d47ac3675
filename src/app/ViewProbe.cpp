#include "app/ViewProbe.h"

#include "app/FitRectangle.h"

namespace qv {

std::optional<float> ViewProbe::DistanceAlong(const Vec3& from, const Vec3& direction) const {
  const RaytraceImpl* renderer = site_.NavigableRenderer();
  const auto hit = renderer ? renderer->CastRay(from, direction) : std::nullopt;
  if (!hit) return std::nullopt;
  return hit->distance;
}

PickedPoint ViewProbe::Pick(int x, int y) const {
  const RaytraceImpl* renderer = site_.NavigableRenderer();
  const wxSize picture = site_.PictureSize();
  const wxSize view = view_.GetClientSize();
  const PixelRectangle shown = FitRectangle(picture.x, picture.y, view.x, view.y);
  if (!renderer || shown.width < 1 || shown.height < 1) return {};
  const int column = (x - shown.x) * picture.x / shown.width;
  const int row = (y - shown.y) * picture.y / shown.height;
  RayHit hit;
  PickedPoint point;
  point.hit = renderer->PickPixel(column, picture.y - 1 - row, hit);
  point.position = hit.position;
  point.distance = hit.distance;
  point.direction = hit.direction;
  return point;
}

void ViewProbe::PanVectors(float distance, Vec3& right, Vec3& up) const {
  right = up = Vec3::Zero();
  if (const RaytraceImpl* renderer = site_.NavigableRenderer()) {
    renderer->PanVectors(distance, right, up);
  }
}

std::optional<SceneBox> ViewProbe::Bounds() const {
  const RaytraceImpl* renderer = site_.NavigableRenderer();
  if (!renderer || renderer->Statistics().triangleCount < 1) return std::nullopt;
  const ViewBounds bounds = renderer->Bounds();
  return SceneBox{bounds.minimum, bounds.maximum};
}

ViewGeometry ViewProbe::View() const {
  const wxSize view = view_.GetClientSize();
  return {view.x, view.y, frame_.GetSize().y};
}

}  // namespace qv
