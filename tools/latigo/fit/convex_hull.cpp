#include "convex_hull.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>

namespace latigo::fit {

namespace {

// Twice the area of the triangle; positive if it is anticlockwise.
double Turn(PlanePoint a, PlanePoint b, PlanePoint c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

double Distance(PlanePoint a, PlanePoint b) {
  return std::hypot(b.x - a.x, b.y - a.y);
}

}  // namespace

// Andrew's monotone chain: the lower half from left to right, then the upper half.
std::vector<PlanePoint> ConvexHull(std::vector<PlanePoint> points) {
  const auto key = [](const PlanePoint& p) { return std::tuple(p.x, p.y); };
  std::sort(points.begin(), points.end(), [&](const auto& a, const auto& b) { return key(a) < key(b); });
  points.erase(
      std::unique(points.begin(), points.end(), [&](const auto& a, const auto& b) { return key(a) == key(b); }),
      points.end());
  if (points.size() < 3) {
    return points;
  }
  std::vector<PlanePoint> hull;
  const auto add = [&hull](std::size_t first, const PlanePoint& point) {
    while (hull.size() >= first + 2 && !(Turn(hull[hull.size() - 2], hull.back(), point) > 0)) {
      hull.pop_back();
    }
    hull.push_back(point);
  };
  for (const PlanePoint& point : points) {
    add(0, point);
  }
  const std::size_t lower = hull.size() - 1;
  for (auto point = points.rbegin() + 1; point != points.rend(); ++point) {
    add(lower, *point);
  }
  hull.pop_back();
  return hull;
}

double AreaOf(const std::vector<PlanePoint>& hull) {
  double twice = 0;
  for (std::size_t i = 2; i < hull.size(); ++i) {
    twice += Turn(hull[0], hull[i - 1], hull[i]);
  }
  return twice / 2;
}

bool Contains(const std::vector<PlanePoint>& hull, PlanePoint point) {
  constexpr double Tolerance = 1e-6;  // of the edge: units
  for (std::size_t i = 0; i < hull.size(); ++i) {
    const PlanePoint& from = hull[i];
    const PlanePoint& to = hull[(i + 1) % hull.size()];
    const double length = Distance(from, to);
    if (!(Turn(from, to, point) >= -Tolerance * length) || (hull.size() < 3 && Distance(from, point) > length)) {
      return false;
    }
  }
  return !hull.empty();
}

}  // namespace latigo::fit
