#include "presets/KeyBuilding.h"

#include <algorithm>
#include <cmath>

#include "presets/CameraSpline.h"

namespace qv {
namespace {

constexpr int kKeysPerSpan = 10;
constexpr double kTurnRate = 0.785398;  // radians a second
constexpr float kHalfTurn = 3.141592f;
constexpr float kFullTurn = 6.283184f;
// A span counts as short beside a neighbour of five times its length, and as no way at all where
// less than this many seconds are spent on it.
constexpr float kShortSpan = 0.2f;
constexpr float kNegligibleSeconds = 0.005f;
// The curve of a short span is bent as if its long neighbour were three times its own length.
constexpr float kPhantomLength = 3.0f;

YawPitch AnglesOf(const ViewPreset& view) {
  return YawPitchFromDirection(DirectionFromQuaternion(view.pose.orientation));
}

double TurnSeconds(float from, float to) {
  return std::abs(to - from) / kTurnRate;
}

// The curve of one span: a segment of a spline.
struct SpanCurve {
  CameraSpline spline;
  std::size_t segment;
};

// Chooses for each span of a path the curve that it runs on. Where a short span lies next to a long
// one, the tangent of the long one would swing it wide; its curve ends in a phantom point nearby on
// the long span instead.
class SpanCurves {
 public:
  SpanCurves(std::span<const ViewPreset> views, float speed)
      : points_(PointsOf(views)), main_(points_), negligible_(kNegligibleSeconds * speed) {}

  SpanCurve Of(std::size_t span) const {
    const std::size_t last = points_.size() - 2;
    const Vec3 &from = points_[span], &to = points_[span + 1];
    const bool shortBefore = span != 0 && Length(span) / Length(span - 1) < kShortSpan;
    const bool shortAfter = span != last && Length(span) / Length(span + 1) < kShortSpan;
    if (Length(span) < negligible_) return {CameraSpline({from, to}), 0};
    if (!shortBefore && !shortAfter) return {main_, span};

    std::vector<Vec3> points;
    if (shortBefore) {
      points.push_back(Phantom(from, points_[span - 1], Length(span) / Length(span - 1)));
    } else if (span != 0) {
      points.push_back(points_[span - 1]);
    }
    const std::size_t segment = points.size();
    points.insert(points.end(), {from, to});
    if (shortAfter) {
      points.push_back(Phantom(to, points_[span + 2], Length(span) / Length(span + 1)));
    } else if (span != last) {
      points.push_back(points_[span + 2]);
    }
    return {CameraSpline(std::move(points)), segment};
  }

  float Length(std::size_t span) const { return (points_[span + 1] - points_[span]).norm(); }

 private:
  static std::vector<Vec3> PointsOf(std::span<const ViewPreset> views) {
    std::vector<Vec3> points;
    points.reserve(views.size());
    for (const ViewPreset& view : views) points.push_back(view.pose.position);
    return points;
  }

  static Vec3 Phantom(const Vec3& end, const Vec3& beyond, float ratio) {
    const float along = kPhantomLength * ratio;
    return end * (1 - along) + beyond * along;
  }

  std::vector<Vec3> points_;
  CameraSpline main_;
  float negligible_;
};

// Appends keys that differ from the one before in time, position and orientation alone.
class KeyRow {
 public:
  KeyRow(std::vector<CameraKey>& keys, const CameraKey& first) : keys_(keys) {
    keys_.push_back(first);
  }

  void Pause(double seconds) {
    CameraKey key = keys_.back();
    key.time += seconds;
    keys_.push_back(key);
  }

  void MoveOn(double seconds, const Vec3& position, const Eigen::Quaternionf& orientation) {
    Pause(seconds);
    keys_.back().pose.position = position;
    keys_.back().pose.orientation = orientation;
  }

 private:
  std::vector<CameraKey>& keys_;
};

void JoinTwo(KeyRow& row, const ViewPreset& from, const ViewPreset& to, float speed) {
  const YawPitch start = AnglesOf(from), end = AnglesOf(to);
  const double way = (to.pose.position - from.pose.position).norm();
  // Here the yaw may turn the long way round.
  const double seconds =
      std::max({way / speed, TurnSeconds(start.yaw, end.yaw), TurnSeconds(start.pitch, end.pitch)});
  row.MoveOn(seconds, to.pose.position, to.pose.orientation);
}

// The heading and slope of both ends of a span, with yaws that go on from the span before.
class Turns {
 public:
  explicit Turns(std::span<const ViewPreset> views) : views_(views) {}

  std::pair<YawPitch, YawPitch> Next() {
    YawPitch start = AnglesOf(views_[span_]), end = AnglesOf(views_[span_ + 1]);
    ++span_;
    start.yaw += offset_;
    end.yaw += offset_;
    float turn = 0;
    if (end.yaw - start.yaw > kHalfTurn) turn = -kFullTurn;
    if (end.yaw - start.yaw < -kHalfTurn) turn = kFullTurn;
    end.yaw += turn;
    offset_ += turn;
    return {start, end};
  }

 private:
  std::span<const ViewPreset> views_;
  std::size_t span_ = 0;
  float offset_ = 0;
};

void JoinMany(KeyRow& row, std::span<const ViewPreset> views, float speed) {
  const SpanCurves curves(views, speed);
  Turns turns(views);
  for (std::size_t span = 0; span + 1 < views.size(); ++span) {
    const auto [spline, segment] = curves.Of(span);
    const auto [start, end] = turns.Next();
    const double turning =
        std::max(TurnSeconds(start.yaw, end.yaw), TurnSeconds(start.pitch, end.pitch));
    Vec3 previous = spline.Evaluate(segment, 0);
    for (int k = 1; k <= kKeysPerSpan; ++k) {
      const double s = k * static_cast<double>(0.1f);
      const Vec3 point = spline.Evaluate(segment, static_cast<float>(s));
      const double way = (point - previous).norm();
      const auto mixed = [s](float a, float b) { return static_cast<float>(a * (1 - s) + b * s); };
      row.MoveOn(std::max(way / speed, turning / kKeysPerSpan), point,
                 QuaternionFromYawPitch(mixed(start.yaw, end.yaw), mixed(start.pitch, end.pitch)));
      previous = point;
    }
  }
}

}  // namespace

std::vector<CameraKey> BuildKeyframePath(std::span<const ViewPreset> views, float speed,
                                         const SunRecord& sun, double startPause, double endPause) {
  std::vector<CameraKey> keys;
  if (views.empty()) return keys;
  const ViewPreset& first = views.front();
  const bool two = views.size() == 2;
  CameraKey start{0, first.pose, two ? first.sun : sun};
  start.sun.sunTag = first.sun.sunTag;

  KeyRow row(keys, start);
  row.Pause(startPause);
  if (two) {
    JoinTwo(row, first, views.back(), speed);
  } else {
    JoinMany(row, views, speed);
  }
  row.Pause(endPause);
  return keys;
}

std::vector<CameraKey> BuildTour(std::span<const ViewPreset> views, double firstDwell,
                                 double lastDwell, double travel, double dwell) {
  std::vector<CameraKey> keys;
  double time = 0;
  for (std::size_t i = 0; i < views.size(); ++i) {
    double stay = dwell;
    if (i + 1 == views.size()) stay = lastDwell;
    if (i == 0) stay = firstDwell;
    keys.push_back({time, views[i].pose, views[i].sun});
    keys.push_back({time + stay, views[i].pose, views[i].sun});
    time += stay + travel;
  }
  return keys;
}

}  // namespace qv
